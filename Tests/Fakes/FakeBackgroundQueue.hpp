#pragma once

#include <cstddef>
#include <deque>

#include "Platform/BackgroundQueue.hpp"

namespace ostrel {

/// Background work that waits for the test to run it on its own thread. Work that was not yet run stands for
/// work that takes its time, or hangs.
class FakeBackgroundQueue final : public BackgroundQueue {
 public:
  void run(QualityOfService quality, std::function<void()> work) override;

  /// Runs the work that is next by quality and arrival; a failure when none waits.
  void runNext();

  /// Runs all that waits and what that hands over.
  void runAll();

  std::size_t countWaiting() const { return urgent_.size() + other_.size(); }

 private:
  std::deque<std::function<void()>> urgent_;
  std::deque<std::function<void()>> other_;
};

}  // namespace ostrel
