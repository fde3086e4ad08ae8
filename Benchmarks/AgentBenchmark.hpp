#pragma once

#include <cstdint>
#include <string>

#include "Benchmarks/HostRootFolder.hpp"

namespace ostrel {

/// The cost of one idle poller.
struct PollerFigures {
  double refreshMicroseconds = 0;  ///< CPU of one refresh, the median of all
  double contextSwitches = 0;      ///< of one refresh, the mean of all
  std::uint64_t residentKiB = 0;   ///< at the end
};

/// Measures the console agent and a bare loop side by side, at the agent's interval, on a separate host root.
struct AgentFigures {
  PollerFigures agent;
  PollerFigures bareLoop;
};
AgentFigures measureAgent(int refreshes, HostRootFolder::Reports reports);

/// Milliseconds of CPU of `activate` and its children when everything is approved; median of the rounds.
double activationMilliseconds(int rounds);

}  // namespace ostrel
