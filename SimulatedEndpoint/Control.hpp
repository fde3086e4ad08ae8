#pragma once

#include <span>
#include <string>

#include "SimulatedEndpoint/ScenarioFolder.hpp"
#include "SimulatedEndpoint/SimulatedState.hpp"

namespace ostrel::simulated {

/// What a command line of the control program comes to: exit status 0 with text for the standard output, else
/// text for the standard error.
struct ControlResult {
  int status = 0;
  std::string text;
};

/// Runs one command line without the program's name; the profiles tool is the stand-in to be linked.
ControlResult runControl(std::span<const std::string> arguments, const ScenarioFolder& folder,
                         const SimulatedState& state, const std::string& profilesTool);

}  // namespace ostrel::simulated
