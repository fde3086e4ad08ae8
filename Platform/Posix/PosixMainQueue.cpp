#include "Platform/Posix/PosixMainQueue.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace ostrel {

namespace {

using SteadyClock = std::chrono::steady_clock;

// Longest delay, so that nanoseconds do not overflow.
constexpr std::chrono::milliseconds maxDelay = std::chrono::years(10);

}  // namespace

void PosixMainQueue::post(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  const auto now = SteadyClock::now();
  posts_.push_back({now, std::move(work)});
  armNoLaterThan(now);
}

ScheduledWork PosixMainQueue::after(std::chrono::milliseconds delay, std::function<void()> work) {
  const auto due = SteadyClock::now() + std::clamp(delay, std::chrono::milliseconds(0), maxDelay);
  return schedule(due, std::make_shared<Timer>(std::chrono::milliseconds(0), std::move(work)));
}

ScheduledWork PosixMainQueue::every(std::chrono::milliseconds period, std::function<void()> work) {
  period = std::clamp(period, std::chrono::milliseconds(1), maxDelay);
  return schedule(SteadyClock::now() + period, std::make_shared<Timer>(period, std::move(work)));
}

ScheduledWork PosixMainQueue::schedule(Time due, std::shared_ptr<Timer> timer) {
  // Cancelled timers are dropped, so that repeated scheduling and cancelling does not accumulate entries.
  std::erase_if(timers_, [](const auto& entry) { return entry.second.expired(); });
  timers_.emplace(due, timer);
  const std::lock_guard lock(mutex_);
  armNoLaterThan(due);
  return timer;
}

ScheduledWork PosixMainQueue::watch(int descriptor, std::function<void()> work) {
  forgetWatches();
  if (!wake_.watch(descriptor)) throw std::system_error(errno, std::generic_category(), "watching");
  auto token = std::make_shared<std::function<void()>>(std::move(work));
  watches_.push_back({descriptor, token});
  return token;
}

void PosixMainQueue::forgetWatches() {
  std::erase_if(watches_, [this](const Watch& watch) {
    if (watch.work.expired()) wake_.unwatch(watch.descriptor);
    return watch.work.expired();
  });
}

void PosixMainQueue::runReadable() {
  forgetWatches();
  if (watches_.empty()) return;
  // Each is looked up when its turn comes, since the work may add or remove watches.
  for (const int descriptor : wake_.readable()) {
    const auto watch = std::ranges::find(watches_, descriptor, &Watch::descriptor);
    const auto work = watch == watches_.end() ? nullptr : watch->work.lock();
    if (work) (*work)();
  }
}

void PosixMainQueue::processDueWork() {
  runReadable();
  const auto now = SteadyClock::now();
  for (auto posts = countPosts();;) {
    const auto oldest = posts > 0 ? oldestPostTime() : std::nullopt;
    if (runTimerDue(oldest ? std::min(*oldest, now) : now)) continue;
    if (!oldest) break;
    --posts;
    runOldestPost();
  }
  armForNext();
}

bool PosixMainQueue::runTimerDue(Time limit) {
  while (!timers_.empty() && timers_.begin()->first <= limit) {
    auto entry = timers_.extract(timers_.begin());
    auto timer = entry.mapped().lock();
    if (!timer) continue;
    const auto period = timer->period;
    if (period == std::chrono::milliseconds(0)) {
      const auto work = std::move(timer->work);
      timer.reset();
      work();
      return true;
    }
    timer->work();
    timer.reset();
    if (entry.mapped().expired()) return true;
    entry.key() += ((SteadyClock::now() - entry.key()) / period + 1) * period;
    timers_.insert(std::move(entry));
    return true;
  }
  return false;
}

void PosixMainQueue::runOldestPost() {
  std::function<void()> work;
  {
    const std::lock_guard lock(mutex_);
    work = std::move(posts_.front().work);
    posts_.pop_front();
  }
  work();
}

std::size_t PosixMainQueue::countPosts() {
  const std::lock_guard lock(mutex_);
  return posts_.size();
}

std::optional<PosixMainQueue::Time> PosixMainQueue::oldestPostTime() {
  const std::lock_guard lock(mutex_);
  return posts_.empty() ? std::nullopt : std::optional(posts_.front().time);
}

void PosixMainQueue::armNoLaterThan(Time due) {
  if (armed_ && *armed_ <= due) return;
  armed_ = due;
  wake_.arm(due);
}

void PosixMainQueue::armForNext() {
  const std::lock_guard lock(mutex_);
  if (!posts_.empty()) return armNoLaterThan(posts_.front().time);
  while (!timers_.empty() && timers_.begin()->second.expired()) timers_.erase(timers_.begin());
  if (timers_.empty()) {
    if (std::exchange(armed_, std::nullopt)) wake_.disarm();
  } else if (armed_ != timers_.begin()->first) {
    armed_ = timers_.begin()->first;
    wake_.arm(*armed_);
  }
}

}  // namespace ostrel
