#pragma once

#include <cstdint>
#include <string>

#include "Benchmarks/HostRootFolder.hpp"

namespace ostrel {

/// What one idle poller costs.
struct PollerFigures {
  double refreshMicroseconds = 0;  ///< CPU of one refresh, the median of all
  double contextSwitches = 0;      ///< of one refresh, the mean of all
  std::uint64_t residentKiB = 0;   ///< at the end
};

/// Watches the console agent and a bare loop side by side, at the rhythm of the agent, over a host root of
/// its own.
struct AgentFigures {
  PollerFigures agent;
  PollerFigures bareLoop;
};
AgentFigures measureAgent(int refreshes, HostRootFolder::Reports reports);

/// Milliseconds of CPU of `activate` and its children where everything is approved, the median of the rounds.
double activationMilliseconds(int rounds);

}  // namespace ostrel
