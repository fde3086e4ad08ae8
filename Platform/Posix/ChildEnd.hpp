#pragma once

#include <sys/types.h>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

/// A descriptor that is readable once the child has ended, which is not reaped yet; none where the system has
/// none to give.
[[nodiscard]] Descriptor openPidfd(pid_t child);

}  // namespace ostrel
