#pragma once

#include <chrono>

namespace ostrel {

/// A point on the system clock, in milliseconds since 1970 UTC.
using Date = std::chrono::sys_time<std::chrono::milliseconds>;

}  // namespace ostrel
