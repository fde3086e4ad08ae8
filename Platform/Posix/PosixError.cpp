#include "Platform/Posix/PosixError.hpp"

#include <system_error>

namespace ostrel {

PlatformError posixError(int number) {
  return {posixErrorDomain, number, std::generic_category().message(number)};
}

bool isPosixError(const PlatformError& error, int number) {
  return error.domain == posixErrorDomain && error.code == number;
}

}  // namespace ostrel
