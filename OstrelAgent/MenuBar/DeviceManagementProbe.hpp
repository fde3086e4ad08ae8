#pragma once

#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Asks the system's profiles tool whether the Mac is enrolled in device management; a tool that cannot be
/// asked counts as no. Blocks.
bool isEnrolledInDeviceManagement(ChildProcesses& childProcesses);

}  // namespace ostrel
