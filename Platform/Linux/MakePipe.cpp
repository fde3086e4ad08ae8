#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PosixError.hpp"

namespace ostrel {

namespace {

Descriptor aboveStandardStreams(int number) {
  if (number > STDERR_FILENO) return Descriptor(number);
  const Descriptor low(number);
  return Descriptor(::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace

std::expected<Pipe, PlatformError> makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(posixError(errno));
  Pipe made{aboveStandardStreams(ends[0]), aboveStandardStreams(ends[1])};
  if (!made.reading || !made.writing) return std::unexpected(posixError(EMFILE));
  return made;
}

}  // namespace ostrel
