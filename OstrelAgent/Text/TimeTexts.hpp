#pragma once

#include <functional>
#include <string>

#include "Platform/Date.hpp"

namespace ostrel {

/// How times are written in the person's language and local time.
struct TimeTexts {
  std::function<std::string(Date)> clockTime;  ///< "10:20 AM"
  std::function<std::string(Date)> shortDate;  ///< "1/2/25, 10:20 AM"

  /// How long ago a date was: "just now", "5 min ago", "3 h ago", from one day on its short date.
  std::string relativeAge(Date date, Date now) const;
};

}  // namespace ostrel
