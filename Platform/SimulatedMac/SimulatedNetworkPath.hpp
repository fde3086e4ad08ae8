#pragma once

#include <utility>

#include "Platform/NetworkPath.hpp"
#include "Platform/SimulatedMac/OverridesWatch.hpp"
#include "Platform/SimulatedMac/SimulatedOverrides.hpp"

namespace ostrel {

/// The network path of the overrides, else that of the machine.
class SimulatedNetworkPath final : public NetworkPath {
 public:
  SimulatedNetworkPath(NetworkPath& machines, const SimulatedOverrides& overrides, OverridesWatch watch)
      : machines_(machines), overrides_(overrides), watch_(std::move(watch)) {}

  [[nodiscard]] ScheduledWork observe(std::function<void(const NetworkPathUpdate&)> updated) override;

 private:
  NetworkPath& machines_;
  const SimulatedOverrides& overrides_;
  const OverridesWatch watch_;
};

}  // namespace ostrel
