#pragma once

#include <string>

namespace ostrel {

/// A random UUID of version 4 (RFC 9562) in upper case, as the system writes them.
std::string randomUuid();

}  // namespace ostrel
