#pragma once

#include <functional>
#include <string>

#include "Platform/Date.hpp"

namespace ostrel {

/// Formats times in the user's language and local time.
struct TimeTexts {
  std::function<std::string(Date)> clockTime;  ///< "10:20 AM"
  std::function<std::string(Date)> shortDate;  ///< "1/2/25, 10:20 AM"

  /// The age of a date: "just now", "5 min ago", "3 h ago"; from one day on the short date.
  std::string relativeAge(Date date, Date now) const;
};

}  // namespace ostrel
