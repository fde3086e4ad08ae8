#pragma once

#include <functional>
#include <string>

#include "Platform/Posix/PosixMainQueue.hpp"

namespace ostrel {

/// Runs the work after the file at a real path was written, replaced or removed, while the token lives; never
/// inside the call. Creates the file's folder, since only that can be watched before the file exists. Reports
/// nothing when the system is out of watches. Main thread.
[[nodiscard]] ScheduledWork watchFile(PosixMainQueue& mainQueue, const std::string& path,
                                      std::function<void()> changed);

}  // namespace ostrel
