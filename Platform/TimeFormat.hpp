#pragma once

#include <string>

#include "Platform/Date.hpp"

namespace ostrel {

/// Formats times in the user's language and local time (DateFormatter). Any thread.
class TimeFormat {
 public:
  virtual ~TimeFormat() = default;

  /// The time of day alone: "10:20 AM".
  virtual std::string clockTime(Date date) const = 0;

  /// Short date with the time of day: "1/2/25, 10:20 AM".
  virtual std::string shortDate(Date date) const = 0;
};

}  // namespace ostrel
