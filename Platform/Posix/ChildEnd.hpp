#pragma once

#include <sys/types.h>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

/// A descriptor that is readable once the child, which is not reaped yet, has exited; none when the system
/// has no descriptor left.
[[nodiscard]] Descriptor openPidfd(pid_t child);

}  // namespace ostrel
