#pragma once

#include <functional>

namespace ostrel {

enum class QualityOfService { utility, userInitiated };

/// A bounded thread pool for blocking work (a global dispatch queue). Waiting work starts by quality of
/// service, then by arrival.
class BackgroundQueue {
 public:
  virtual ~BackgroundQueue() = default;

  /// Runs the work on a thread of the pool, later when all are busy. Any thread, never blocks.
  virtual void run(QualityOfService quality, std::function<void()> work) = 0;
};

}  // namespace ostrel
