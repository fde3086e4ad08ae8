#pragma once

#include <functional>

#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Runs the work whenever the file of overrides may have changed, while the token lives; never inside the
/// call. Main thread.
using OverridesWatch = std::function<ScheduledWork(std::function<void()> changed)>;

}  // namespace ostrel
