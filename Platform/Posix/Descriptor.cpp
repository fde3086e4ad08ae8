#include "Platform/Posix/Descriptor.hpp"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace ostrel {

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
