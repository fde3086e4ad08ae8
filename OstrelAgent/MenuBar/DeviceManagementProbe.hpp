#pragma once

#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Asks the system's profiles tool whether the Mac is enrolled in device management; false when the tool
/// fails. Blocks.
bool isEnrolledInDeviceManagement(ChildProcesses& childProcesses);

}  // namespace ostrel
