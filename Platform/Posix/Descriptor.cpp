#include "Platform/Posix/Descriptor.hpp"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "Platform/Posix/PosixError.hpp"

namespace ostrel {

namespace {

Descriptor aboveStandardStreams(int number) {
  if (number > STDERR_FILENO) return Descriptor(number);
  const Descriptor low(number);
  return Descriptor(::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    (void)close();
    number_ = std::exchange(other.number_, -1);
  }
  return *this;
}

int Descriptor::close() {
  const int number = std::exchange(number_, -1);
  return number >= 0 && ::close(number) != 0 ? errno : 0;
}

std::expected<Pipe, PlatformError> makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::unexpected(posixError(errno));
  Pipe made{aboveStandardStreams(ends[0]), aboveStandardStreams(ends[1])};
  if (!made.reading || !made.writing) return std::unexpected(posixError(EMFILE));
  return made;
}

int writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const auto written = ::write(descriptor, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      pollfd watched{descriptor, POLLOUT, 0};
      (void)::poll(&watched, 1, -1);
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

}  // namespace ostrel
