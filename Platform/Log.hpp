#pragma once

#include <string_view>

namespace ostrel {

/// The system log (NSLog). Any thread; never fails.
class Log {
 public:
  virtual ~Log() = default;

  /// Writes one diagnostic line, given without its line feed.
  virtual void line(std::string_view text) = 0;
};

}  // namespace ostrel
