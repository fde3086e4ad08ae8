#pragma once

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

/// A pipe by which a signal handler wakes a loop. Throws std::system_error when the system has no descriptor
/// left.
Pipe makeSignalPipe();

/// Makes the pipe readable by its writing end. For signal handlers: preserves errno.
void wakeFromSignal(int writingEnd);

}  // namespace ostrel
