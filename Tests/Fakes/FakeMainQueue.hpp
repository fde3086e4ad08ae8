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

/// A main queue that turns when the test says so, on the time of a fake clock and on the test's own thread.
class FakeMainQueue final : public MainQueue {
 public:
  explicit FakeMainQueue(FakeClock& clock) : clock_(clock) {}

  void post(std::function<void()> work) override {
    posts_.push_back(std::move(work));
    due_ = posts_.size();
  }

  void postLazily(std::function<void()> work) override { posts_.push_back(std::move(work)); }

  [[nodiscard]] ScheduledWork after(std::chrono::milliseconds delay, std::function<void()> work) override {
    return schedule(delay, std::make_shared<Timer>(std::chrono::milliseconds(0), std::move(work)));
  }

  [[nodiscard]] ScheduledWork every(std::chrono::milliseconds period, std::function<void()> work) override {
    period = std::max(period, std::chrono::milliseconds(1));
    return schedule(period, std::make_shared<Timer>(period, std::move(work)));
  }

  /// Runs what was posted and what that posts; a test that never comes to rest fails.
  void runAll() {
    for (int turns = 0; due_ > 0; ++turns) {
      if (turns == 100000) {
        ADD_FAILURE() << "posted work posts itself without end";
        return;
      }
      const auto work = std::move(posts_.front());
      posts_.pop_front();
      --due_;
      work();
    }
  }

  /// Moves the clock by the duration, stopping at each due time to run what is due there.
  void advance(std::chrono::milliseconds duration) {
    const Date end = clock_.now() + duration;
    runAll();
    while (!timers_.empty() && timers_.begin()->first <= end) {
      due_ = posts_.size();
      runAll();
      runTimer();
      // Timers of one time run before the work that they post.
      if (timers_.empty() || timers_.begin()->first > clock_.now()) runAll();
    }
    clock_.set(std::max(clock_.now(), end));
  }

  /// Whether something was posted that wakes the main thread.
  bool isWorkDue() const { return due_ > 0; }

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

  ScheduledWork schedule(std::chrono::milliseconds delay, std::shared_ptr<Timer> timer) {
    timers_.emplace(clock_.now() + std::max(delay, std::chrono::milliseconds(0)), timer);
    return timer;
  }

  void runTimer() {
    auto entry = timers_.extract(timers_.begin());
    auto timer = entry.mapped().lock();
    if (!timer) return;
    clock_.set(std::max(clock_.now(), entry.key()));
    const auto period = timer->period;
    if (period == std::chrono::milliseconds(0)) {
      const auto work = std::move(timer->work);
      timer.reset();
      return work();
    }
    timer->work();
    timer.reset();
    if (entry.mapped().expired()) return;
    entry.key() += ((clock_.now() - entry.key()) / period + 1) * period;
    timers_.insert(std::move(entry));
  }

  FakeClock& clock_;
  std::multimap<Date, std::weak_ptr<Timer>> timers_;
  std::deque<std::function<void()>> posts_;
  std::size_t due_ = 0;  ///< of the posts, those up to the last that is not lazy
};

}  // namespace ostrel
