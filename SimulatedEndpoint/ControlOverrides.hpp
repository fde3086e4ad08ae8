#pragma once

#include <optional>
#include <span>
#include <string>

#include "SimulatedEndpoint/ControlResult.hpp"
#include "SimulatedEndpoint/Overrides.hpp"

namespace ostrel::simulated {

/// Runs a command line that overrides something of the system or its stand-ins; nothing when it is none.
std::optional<ControlResult> runOverride(std::span<const std::string> arguments, const Overrides& overrides);

}  // namespace ostrel::simulated
