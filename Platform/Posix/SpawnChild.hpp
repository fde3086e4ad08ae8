#pragma once

#include <sys/types.h>

#include <expected>
#include <string>

#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Descriptors that receive the captured streams of a child.
struct CaptureDescriptors {
  int output = -1;
  int error = -1;
};

/// Starts the command from the executable at the real path. All signals are unblocked with default actions;
/// the child leads a process group unless it inherits the output.
[[nodiscard]] std::expected<pid_t, PlatformError> spawnChild(const std::string& realPath,
                                                             const ChildCommand& command,
                                                             CaptureDescriptors captured);

/// Starts the command in its own session with an empty input.
[[nodiscard]] std::expected<pid_t, PlatformError> spawnDetachedChild(const std::string& realPath,
                                                                     const ChildCommand& command);

}  // namespace ostrel
