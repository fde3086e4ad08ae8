#pragma once

#include "Platform/Posix/PosixMainQueue.hpp"
#include "Platform/SystemWake.hpp"

namespace ostrel {

/// Detects wakes by the kernel's clocks. Without kernel support no wake is reported.
class LinuxSystemWake final : public SystemWake {
 public:
  explicit LinuxSystemWake(PosixMainQueue& mainQueue) : mainQueue_(mainQueue) {}

  [[nodiscard]] ScheduledWork observe(std::function<void()> woke) override;

 private:
  PosixMainQueue& mainQueue_;
};

}  // namespace ostrel
