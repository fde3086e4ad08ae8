#pragma once

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

/// A pipe by which a signal handler wakes a loop. Throws std::system_error when the system has no descriptor
/// left.
Pipe makeSignalPipe();

/// Makes the pipe of that writing end readable. For signal handlers: errno stays as it was.
void wakeFromSignal(int writingEnd);

}  // namespace ostrel
