#include "Platform/Posix/WakeDescriptor.hpp"

#include <sys/timerfd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace ostrel {

// The steady clock of the standard library is CLOCK_MONOTONIC here, so its times need no conversion.
WakeDescriptor::WakeDescriptor()
    : descriptor_(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
  if (!descriptor_) throw std::system_error(errno, std::generic_category(), "timerfd_create");
}

void WakeDescriptor::arm(std::chrono::steady_clock::time_point due) {
  const auto sinceStart = std::max(due.time_since_epoch(), std::chrono::steady_clock::duration(1));
  const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceStart);
  itimerspec time{};
  time.it_value.tv_sec = static_cast<std::time_t>(seconds.count());
  time.it_value.tv_nsec = static_cast<long>(std::chrono::nanoseconds(sinceStart - seconds).count());
  (void)::timerfd_settime(descriptor_.number(), TFD_TIMER_ABSTIME, &time, nullptr);
}

void WakeDescriptor::disarm() {
  const itimerspec never{};
  (void)::timerfd_settime(descriptor_.number(), 0, &never, nullptr);
}

}  // namespace ostrel
