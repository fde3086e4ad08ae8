#include "Platform/Posix/BoundedWrite.hpp"

#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace ostrel {

namespace {

constexpr int timeoutMilliseconds = 500;

/// True when a piece of PIPE_BUF bytes can be written without waiting.
bool becomesWritable(int descriptor) {
  pollfd watched{descriptor, POLLOUT, 0};
  int ready = 0;
  do {
    ready = ::poll(&watched, 1, timeoutMilliseconds);
  } while (ready < 0 && errno == EINTR);
  return ready > 0 && (watched.revents & POLLOUT) != 0;
}

}  // namespace

void writeBounded(int descriptor, std::string_view text) {
  while (!text.empty()) {
    if (!becomesWritable(descriptor)) return;
    const auto written = ::write(descriptor, text.data(), text.substr(0, PIPE_BUF).size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR && errno != EAGAIN) {
      return;
    }
  }
}

}  // namespace ostrel
