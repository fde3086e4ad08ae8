#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

/// A descriptor that is readable from a given time until it is armed again or disarmed, and while a watched
/// descriptor is readable. Any thread, one at a time.
class WakeDescriptor {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  WakeDescriptor();

  int number() const { return descriptor_.number(); }

  /// Makes it readable from that time on, at once when it has passed; replaces an earlier time.
  void arm(std::chrono::steady_clock::time_point due);

  void disarm();

  /// False when the system cannot watch that descriptor.
  [[nodiscard]] bool watch(int descriptor);

  /// Closed descriptors are removed automatically.
  void unwatch(int descriptor);

  /// The watched descriptors that are readable now; of many only some per call.
  std::vector<int> readable() const;

 private:
  void setTimer(std::optional<std::chrono::steady_clock::time_point> due);
  void takeEvent();

  Descriptor descriptor_;
  Descriptor event_;
  Descriptor timer_;
  bool hasEvent_ = false;
  std::optional<std::chrono::steady_clock::time_point> timerDue_;
};

}  // namespace ostrel
