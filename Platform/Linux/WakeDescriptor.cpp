#include "Platform/Posix/WakeDescriptor.hpp"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace ostrel {

// Work due at once is signalled by an eventfd: a timer set to now would cost an interrupt each time. The
// timer stays set meanwhile, so that posted work does not reprogram it.
WakeDescriptor::WakeDescriptor()
    : descriptor_(::epoll_create1(EPOLL_CLOEXEC)),
      event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
  const bool isMade = descriptor_ && event_ && timer_ && watch(event_.number()) && watch(timer_.number());
  if (!isMade) throw std::system_error(errno, std::generic_category(), "wake descriptor");
}

void WakeDescriptor::arm(std::chrono::steady_clock::time_point due) {
  if (due <= std::chrono::steady_clock::now()) {
    if (!hasEvent_) (void)::eventfd_write(event_.number(), 1);
    hasEvent_ = true;
    return;
  }
  takeEvent();
  if (timerDue_ != due) setTimer(due);
}

void WakeDescriptor::disarm() {
  takeEvent();
  if (timerDue_) setTimer(std::nullopt);
}

bool WakeDescriptor::watch(int descriptor) {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = descriptor;
  return ::epoll_ctl(descriptor_.number(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void WakeDescriptor::unwatch(int descriptor) {
  (void)::epoll_ctl(descriptor_.number(), EPOLL_CTL_DEL, descriptor, nullptr);
}

std::vector<int> WakeDescriptor::readable() const {
  std::array<epoll_event, 16> events{};
  const int count = ::epoll_wait(descriptor_.number(), events.data(), events.size(), 0);
  std::vector<int> descriptors;
  for (int i = 0; i < count; ++i) {
    const int descriptor = events[static_cast<std::size_t>(i)].data.fd;
    if (descriptor != event_.number() && descriptor != timer_.number()) descriptors.push_back(descriptor);
  }
  return descriptors;
}

// The steady clock of the standard library is CLOCK_MONOTONIC here, so its times need no conversion.
void WakeDescriptor::setTimer(std::optional<std::chrono::steady_clock::time_point> due) {
  itimerspec time{};
  if (due) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(due->time_since_epoch());
    time.it_value.tv_sec = static_cast<std::time_t>(seconds.count());
    time.it_value.tv_nsec =
        static_cast<long>(std::chrono::nanoseconds(due->time_since_epoch() - seconds).count());
  }
  (void)::timerfd_settime(timer_.number(), TFD_TIMER_ABSTIME, &time, nullptr);
  timerDue_ = due;
}

void WakeDescriptor::takeEvent() {
  eventfd_t count = 0;
  if (hasEvent_) (void)::eventfd_read(event_.number(), &count);
  hasEvent_ = false;
}

}  // namespace ostrel
