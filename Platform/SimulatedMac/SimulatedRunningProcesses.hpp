#pragma once

#include <string>
#include <vector>

#include "Platform/RunningProcesses.hpp"
#include "Platform/SimulatedMac/SimulatedApplications.hpp"

namespace ostrel {

/// The process table of the simulated Mac.
class SimulatedRunningProcesses final : public RunningProcesses {
 public:
  explicit SimulatedRunningProcesses(const SimulatedApplications& applications)
      : applications_(applications) {}

  std::vector<std::string> names() const override;

 private:
  const SimulatedApplications& applications_;
};

}  // namespace ostrel
