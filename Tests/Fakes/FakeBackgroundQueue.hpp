#pragma once

#include <deque>
#include <utility>

#include "Platform/BackgroundQueue.hpp"

namespace ostrel {

/// Background work that waits for the test to run it on its own thread. Work that was not yet run is
/// work that is slow, or hangs.
class FakeBackgroundQueue final : public BackgroundQueue {
 public:
  void run(QualityOfService quality, std::function<void()> work) override {
    if (wrap) work = wrap(std::move(work));
    (quality == QualityOfService::userInitiated ? urgent_ : other_).push_back(std::move(work));
  }

  /// Runs the next work by quality of service and arrival; throws when none waits.
  void runNext() {
    auto& waiting = urgent_.empty() ? other_ : urgent_;
    const auto work = std::move(waiting.at(0));
    waiting.pop_front();
    work();
  }

  /// Runs all waiting work and the work that it adds.
  void runAll() {
    while (countWaiting() > 0) runNext();
  }

  std::size_t countWaiting() const { return urgent_.size() + other_.size(); }

  /// Replaces each work that is added, when set.
  std::function<std::function<void()>(std::function<void()>)> wrap;

 private:
  std::deque<std::function<void()>> urgent_;
  std::deque<std::function<void()>> other_;
};

}  // namespace ostrel
