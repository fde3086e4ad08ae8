#pragma once

#include <sys/types.h>

#include <expected>
#include <string>

#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Descriptors that take the captured streams of a child.
struct CaptureDescriptors {
  int output = -1;
  int error = -1;
};

/// Starts the command's child from the executable at the real path.
/// The child has every signal at its default and none blocked, and leads a process group unless it inherits
/// the output.
[[nodiscard]] std::expected<pid_t, PlatformError> spawnChild(const std::string& realPath,
                                                             const ChildCommand& command,
                                                             CaptureDescriptors captured);

/// Starts it likewise, in a session of its own and with an empty input.
[[nodiscard]] std::expected<pid_t, PlatformError> spawnDetachedChild(const std::string& realPath,
                                                                     const ChildCommand& command);

}  // namespace ostrel
