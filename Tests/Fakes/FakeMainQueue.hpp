#pragma once

#include <cstddef>
#include <deque>
#include <map>

#include "Platform/MainQueue.hpp"
#include "Tests/Fakes/FakeClock.hpp"

namespace ostrel {

/// A main queue that turns when the test says so, on the time of a fake clock and on the test's own thread.
class FakeMainQueue final : public MainQueue {
 public:
  explicit FakeMainQueue(FakeClock& clock) : clock_(clock) {}

  void post(std::function<void()> work) override;
  [[nodiscard]] ScheduledWork after(std::chrono::milliseconds delay, std::function<void()> work) override;
  [[nodiscard]] ScheduledWork every(std::chrono::milliseconds period, std::function<void()> work) override;

  /// Runs what was posted and what that posts; a test that never comes to rest fails.
  void runAll();

  /// Moves the clock by the duration, stopping at each due time to run what is due there.
  void advance(std::chrono::milliseconds duration);

  /// Number of timers whose token is alive.
  std::size_t countTimers() const;

 private:
  struct Timer {
    std::chrono::milliseconds period;
    std::function<void()> work;
  };

  ScheduledWork schedule(std::chrono::milliseconds delay, std::shared_ptr<Timer> timer);
  void runTimer();

  FakeClock& clock_;
  std::multimap<Date, std::weak_ptr<Timer>> timers_;
  std::deque<std::function<void()>> posts_;
};

}  // namespace ostrel
