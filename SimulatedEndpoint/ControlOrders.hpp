#pragma once

#include <optional>
#include <span>
#include <string>

#include "SimulatedEndpoint/ControlResult.hpp"
#include "SimulatedEndpoint/Orders.hpp"

namespace ostrel::simulated {

/// Runs a command line that orders something of the system or its stand-ins; nothing when it is none.
std::optional<ControlResult> runOrder(std::span<const std::string> arguments, const Orders& orders);

}  // namespace ostrel::simulated
