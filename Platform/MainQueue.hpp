#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace ostrel {

/// Keeps scheduled work alive: destroying the last copy cancels it.
using ScheduledWork = std::shared_ptr<void>;

/// The main thread's queue (the main dispatch queue and run-loop timers). Work runs on the main thread, never
/// inside the call that posts it.
class MainQueue {
 public:
  virtual ~MainQueue() = default;

  /// Runs the work once, in the order of posting. Any thread.
  virtual void post(std::function<void()> work) = 0;

  /// Runs the work once after the delay. Main thread.
  [[nodiscard]] virtual ScheduledWork after(std::chrono::milliseconds delay, std::function<void()> work) = 0;

  /// Runs the work once per period, first after one period; missed ticks are skipped. Main thread.
  [[nodiscard]] virtual ScheduledWork every(std::chrono::milliseconds period, std::function<void()> work) = 0;
};

}  // namespace ostrel
