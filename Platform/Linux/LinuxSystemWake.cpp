#include "Platform/Linux/LinuxSystemWake.hpp"

#include <sys/timerfd.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <ctime>
#include <limits>
#include <memory>
#include <utility>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

namespace {

constexpr std::chrono::milliseconds minSleep{500};

std::chrono::nanoseconds timeOf(clockid_t clock) {
  timespec time{};
  (void)::clock_gettime(clock, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// How long the system has slept since boot: only CLOCK_BOOTTIME advances during sleep.
std::chrono::nanoseconds timeSlept() { return timeOf(CLOCK_BOOTTIME) - timeOf(CLOCK_MONOTONIC); }

/// After a sleep the kernel sets the wall clock, which cancels a timer on it (timerfd_create(2)). So does any
/// other change of the clock, but then the time slept has not grown.
class SleepWatch {
 public:
  SleepWatch(PosixMainQueue& queue, std::function<void()> woke) : queue_(queue), woke_(std::move(woke)) {}

  void start() {
    if (timer_ && arm()) watch_ = queue_.watch(timer_.number(), [this] { clockWasSet(); });
  }

 private:
  bool arm() {
    itimerspec never{};
    never.it_value.tv_sec = std::numeric_limits<std::int32_t>::max();
    return ::timerfd_settime(timer_.number(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr) ==
           0;
  }

  void clockWasSet() {
    std::uint64_t expirations = 0;
    (void)!::read(timer_.number(), &expirations, sizeof expirations);
    if (!arm()) watch_ = nullptr;
    const auto slept = timeSlept();
    if (slept - std::exchange(slept_, slept) < minSleep) return;
    woke_();
  }

  PosixMainQueue& queue_;
  std::function<void()> woke_;
  std::chrono::nanoseconds slept_ = timeSlept();
  Descriptor timer_{::timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)};
  ScheduledWork watch_;
};

}  // namespace

ScheduledWork LinuxSystemWake::observe(std::function<void()> woke) {
  const auto watch = std::make_shared<SleepWatch>(mainQueue_, std::move(woke));
  watch->start();
  return watch;
}

}  // namespace ostrel
