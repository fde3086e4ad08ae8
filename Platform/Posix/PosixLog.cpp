#include "Platform/Posix/PosixLog.hpp"

#include <unistd.h>

#include <algorithm>
#include <string>

#include "Platform/Posix/BoundedWrite.hpp"

namespace ostrel {

void PosixLog::line(std::string_view text) {
  std::string line(text);
  // A text that came from elsewhere must not look like two entries.
  std::ranges::replace_if(
      line, [](char c) { return c == '\n' || c == '\r'; }, ' ');
  line += '\n';
  writeBounded(STDERR_FILENO, line);
}

}  // namespace ostrel
