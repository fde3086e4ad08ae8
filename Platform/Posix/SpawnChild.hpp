#pragma once

#include <sys/types.h>

#include <expected>
#include <string>

#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Starts the command's child from the executable at the real path; `output` is where captured output goes.
/// The child has every signal at its default and none blocked, and leads a process group unless it inherits
/// the output.
std::expected<pid_t, PlatformError> spawnChild(const std::string& realPath, const ChildCommand& command,
                                               int output);

}  // namespace ostrel
