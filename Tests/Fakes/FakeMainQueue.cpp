#include "Tests/Fakes/FakeMainQueue.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace ostrel {

void FakeMainQueue::post(std::function<void()> work) { posts_.push_back(std::move(work)); }

ScheduledWork FakeMainQueue::after(std::chrono::milliseconds delay, std::function<void()> work) {
  return schedule(delay, std::make_shared<Timer>(std::chrono::milliseconds(0), std::move(work)));
}

ScheduledWork FakeMainQueue::every(std::chrono::milliseconds period, std::function<void()> work) {
  period = std::max(period, std::chrono::milliseconds(1));
  return schedule(period, std::make_shared<Timer>(period, std::move(work)));
}

ScheduledWork FakeMainQueue::schedule(std::chrono::milliseconds delay, std::shared_ptr<Timer> timer) {
  timers_.emplace(clock_.now() + std::max(delay, std::chrono::milliseconds(0)), timer);
  return timer;
}

void FakeMainQueue::runAll() {
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

void FakeMainQueue::runTimer() {
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

void FakeMainQueue::advance(std::chrono::milliseconds duration) {
  const Date end = clock_.now() + duration;
  runAll();
  while (!timers_.empty() && timers_.begin()->first <= end) {
    runTimer();
    // Timers of one time run before the work that they post.
    if (timers_.empty() || timers_.begin()->first > clock_.now()) runAll();
  }
  clock_.set(std::max(clock_.now(), end));
}

std::size_t FakeMainQueue::countTimers() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(timers_, [](const auto& entry) { return !entry.second.expired(); }));
}

}  // namespace ostrel
