#pragma once

#include <optional>
#include <string>

#include "Tests/Soak/SoakFigures.hpp"

namespace ostrel {

/// Has the agent itself refresh that often, back to back, over the simulated helper and the simulated daemon,
/// with a check-in every so often. Throws std::runtime_error when it does not answer.
SoakRun soakRealAgent(int refreshes);

}  // namespace ostrel
