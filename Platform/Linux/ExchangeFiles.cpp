#include "Platform/Posix/ExchangeFiles.hpp"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>

namespace ostrel {

int exchangeFiles(const std::string& one, const std::string& other) {
  return ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0 ? 0 : errno;
}

}  // namespace ostrel
