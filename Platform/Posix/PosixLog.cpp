#include "Platform/Posix/PosixLog.hpp"

#include <unistd.h>

#include <algorithm>
#include <string>

#include "Platform/Posix/BoundedWrite.hpp"

namespace ostrel {

void PosixLog::line(std::string_view text) {
  std::string line(text);
  // A line feed in a foreign text must not look like a second entry.
  std::ranges::replace_if(
      line, [](char c) { return c == '\n' || c == '\r'; }, ' ');
  line += '\n';
  writeBounded(STDERR_FILENO, line);
}

}  // namespace ostrel
