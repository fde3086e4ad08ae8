#pragma once

#include <span>
#include <string>

#include "SimulatedEndpoint/ControlResult.hpp"
#include "SimulatedEndpoint/ScenarioFolder.hpp"
#include "SimulatedEndpoint/SimulatedState.hpp"

namespace ostrel::simulated {

/// What the commands work on.
struct ControlPlace {
  Files& files;  ///< takes real paths
  const ScenarioFolder& folder;
  const SimulatedState& state;
  std::string toolFolder;  ///< holds the stand-ins of the system's tools
};

/// Runs one command line without the program's name; "serve" is none of its commands.
ControlResult runControl(std::span<const std::string> arguments, const ControlPlace& place);

}  // namespace ostrel::simulated
