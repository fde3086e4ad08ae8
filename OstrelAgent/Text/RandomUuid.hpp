#pragma once

#include <string>

namespace ostrel {

/// A random version 4 UUID (RFC 9562) in upper case.
std::string randomUuid();

}  // namespace ostrel
