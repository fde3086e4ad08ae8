#pragma once

#include <functional>

#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Runs the work whenever the file of orders may have changed, while the token lives; never inside the call.
/// Main thread.
using OrdersWatch = std::function<ScheduledWork(std::function<void()> changed)>;

}  // namespace ostrel
