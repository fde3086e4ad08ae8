#pragma once

#include <optional>
#include <span>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "SimulatedEndpoint/ControlResult.hpp"

namespace ostrel::simulated {

/// Runs a command line that changes what is installed, runs or is stored on the simulated Mac; nullopt when
/// it is none. The files take real paths.
std::optional<ControlResult> runMacCommand(std::span<const std::string> arguments, Files& files,
                                           const HostRoot& root);

}  // namespace ostrel::simulated
