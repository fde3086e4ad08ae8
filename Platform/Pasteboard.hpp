#pragma once

#include <string_view>

namespace ostrel {

/// The general pasteboard (NSPasteboard). Main thread.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  /// Replaces the pasteboard's contents by the UTF-8 text; false when it could not be put there.
  [[nodiscard]] virtual bool setText(std::string_view text) = 0;
};

}  // namespace ostrel
