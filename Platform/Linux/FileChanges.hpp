#pragma once

#include <functional>
#include <string>

#include "Platform/Posix/PosixMainQueue.hpp"

namespace ostrel {

/// Runs the work after the file at a real path was written, put in its place or removed, while the token
/// lives; never inside the call. Makes the file's folder, which alone can be watched before the file is
/// there. Where the system watches no more nothing is told. Main thread.
[[nodiscard]] ScheduledWork watchFile(PosixMainQueue& mainQueue, const std::string& path,
                                      std::function<void()> changed);

}  // namespace ostrel
