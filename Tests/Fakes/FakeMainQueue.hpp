#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <map>
#include <utility>

#include "Platform/MainQueue.hpp"
#include "Tests/Fakes/FakeClock.hpp"

namespace ostrel {

/// A main queue that runs when the test says so, on the test's own thread. The fake clock advances with its
/// time; setting the clock leaves that alone, as it does with real timers.
class FakeMainQueue final : public MainQueue {
 public:
  explicit FakeMainQueue(FakeClock& clock) : clock_(clock) {}

  void post(std::function<void()> work) override { posts_.push_back(std::move(work)); }

  [[nodiscard]] ScheduledWork after(std::chrono::milliseconds delay, std::function<void()> work) override {
    return schedule(delay, std::make_shared<Timer>(std::chrono::milliseconds(0), std::move(work)));
  }

  [[nodiscard]] ScheduledWork every(std::chrono::milliseconds period, std::function<void()> work) override {
    period = std::max(period, std::chrono::milliseconds(1));
    return schedule(period, std::make_shared<Timer>(period, std::move(work)));
  }

  /// Runs posted work and the work that it posts; the test fails when that never ends.
  void runAll() {
    for (int turns = 0; !posts_.empty(); ++turns) {
      if (turns == 100000) {
        ADD_FAILURE() << "posted work posts itself without end";
        return;
      }
      const auto work = std::move(posts_.front());
      posts_.pop_front();
      work();
    }
  }

  /// Lets the duration pass, stopping at each due time to run what is due there.
  void advance(std::chrono::milliseconds duration) {
    const auto end = time_ + duration;
    runAll();
    while (!timers_.empty() && timers_.begin()->first <= end) {
      runAll();
      runTimer();
      // Timers of one time run before the work that they post.
      if (timers_.empty() || timers_.begin()->first > time_) runAll();
    }
    passUntil(end);
  }

  /// Lets the duration pass with the queue not served.
  void fallBehind(std::chrono::milliseconds duration) {
    time_ += duration;
    clock_.advance(duration);
  }

  /// Whether posted work waits.
  bool isWorkDue() const { return !posts_.empty(); }

  /// Number of timers whose token is alive.
  std::size_t countTimers() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(timers_, [](const auto& entry) { return !entry.second.expired(); }));
  }

 private:
  struct Timer {
    std::chrono::milliseconds period;
    std::function<void()> work;
  };

  void passUntil(std::chrono::milliseconds time) {
    if (time > time_) fallBehind(time - time_);
  }

  ScheduledWork schedule(std::chrono::milliseconds delay, std::shared_ptr<Timer> timer) {
    timers_.emplace(time_ + std::max(delay, std::chrono::milliseconds(0)), timer);
    return timer;
  }

  void runTimer() {
    auto entry = timers_.extract(timers_.begin());
    auto timer = entry.mapped().lock();
    if (!timer) return;
    passUntil(entry.key());
    const auto period = timer->period;
    if (period == std::chrono::milliseconds(0)) {
      const auto work = std::move(timer->work);
      timer.reset();
      return work();
    }
    timer->work();
    timer.reset();
    if (entry.mapped().expired()) return;
    entry.key() += ((time_ - entry.key()) / period + 1) * period;
    timers_.insert(std::move(entry));
  }

  FakeClock& clock_;
  std::chrono::milliseconds time_{0};  ///< since the queue was made
  std::multimap<std::chrono::milliseconds, std::weak_ptr<Timer>> timers_;
  std::deque<std::function<void()>> posts_;
};

}  // namespace ostrel
