#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

/// A descriptor that becomes readable at a given time and stays so until it is armed anew or disarmed, and
/// while one that it watches is readable. Any thread, one at a time.
class WakeDescriptor {
 public:
  /// Throws std::system_error when the system has no descriptor left: without one nothing can run.
  WakeDescriptor();

  int number() const { return descriptor_.number(); }

  /// Readable from the time on, at once when it is past; takes the place of an earlier time.
  void arm(std::chrono::steady_clock::time_point due);

  void disarm();

  /// False when the system cannot watch that descriptor.
  [[nodiscard]] bool watch(int descriptor);

  /// One that is closed is watched no more anyway.
  void unwatch(int descriptor);

  /// Those of the watched that are readable now; of many some, the rest another time.
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
