#pragma once

#include <functional>

namespace ostrel {

enum class QualityOfService { utility, userInitiated };

/// A bounded pool of threads for work that blocks (a global dispatch queue). Waiting work starts in the order
/// of its quality of service, then of its arrival.
class BackgroundQueue {
 public:
  virtual ~BackgroundQueue() = default;

  /// Runs the work on a thread of the pool, later when all are busy. Any thread, never blocks.
  virtual void run(QualityOfService quality, std::function<void()> work) = 0;
};

}  // namespace ostrel
