#pragma once

#include <utility>

#include "Platform/SimulatedMac/OverridesWatch.hpp"
#include "Platform/SimulatedMac/SimulatedOverrides.hpp"
#include "Platform/SystemWake.hpp"

namespace ostrel {

/// Wakes from overrides, in addition to those of the machine.
class SimulatedSystemWake final : public SystemWake {
 public:
  SimulatedSystemWake(SystemWake& machines, const SimulatedOverrides& overrides, OverridesWatch watch)
      : machines_(machines), overrides_(overrides), watch_(std::move(watch)) {}

  /// An override from before the call is ignored.
  [[nodiscard]] ScheduledWork observe(std::function<void()> woke) override;

 private:
  SystemWake& machines_;
  const SimulatedOverrides& overrides_;
  const OverridesWatch watch_;
};

}  // namespace ostrel
