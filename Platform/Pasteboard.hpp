#pragma once

#include <string_view>

namespace ostrel {

/// The general pasteboard (NSPasteboard). Main thread.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  /// Puts the text, in UTF-8, in place of all that is on the pasteboard.
  virtual void setText(std::string_view text) = 0;
};

}  // namespace ostrel
