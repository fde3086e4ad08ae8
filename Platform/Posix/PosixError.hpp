#pragma once

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// The error of an errno, with the system's text for it.
PlatformError posixError(int number);

/// True for the error of exactly this errno.
bool isPosixError(const PlatformError& error, int number);

}  // namespace ostrel
