#pragma once

#include <string>

namespace ostrel {

/// A failure of the host: the code has a meaning only together with its domain.
struct PlatformError {
  std::string domain;
  int code = 0;
  std::string description;

  bool operator==(const PlatformError&) const = default;
};

/// Domain of errors whose code is an errno of <errno.h>.
inline constexpr const char* posixErrorDomain = "NSPOSIXErrorDomain";

}  // namespace ostrel
