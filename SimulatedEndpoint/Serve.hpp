#pragma once

#include <string>

#include "Platform/Files.hpp"
#include "SimulatedEndpoint/SimulatedState.hpp"

namespace ostrel::simulated {

/// Serves the control socket of the host root until a signal ends it; gives the exit status. The folder holds
/// the stand-ins of the system's tools.
int serve(Files& files, const SimulatedState& state, const std::string& toolFolder);

}  // namespace ostrel::simulated
