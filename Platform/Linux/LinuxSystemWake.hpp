#pragma once

#include "Platform/Posix/PosixMainQueue.hpp"
#include "Platform/SystemWake.hpp"

namespace ostrel {

/// Wakes by the kernel's clocks. A kernel that does not tell is taken for one that never sleeps.
class LinuxSystemWake final : public SystemWake {
 public:
  explicit LinuxSystemWake(PosixMainQueue& mainQueue) : mainQueue_(mainQueue) {}

  [[nodiscard]] ScheduledWork observe(std::function<void()> woke) override;

 private:
  PosixMainQueue& mainQueue_;
};

}  // namespace ostrel
