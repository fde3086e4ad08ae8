#pragma once

#include <string_view>
#include <vector>

namespace ostrel {

/// An entry of a menu. One without a title is a separator.
struct MenuEntry {
  std::string_view title;
  std::string_view action;         ///< the action sent to the focused view
  std::string_view keyEquivalent;  ///< pressed with Command; a capital letter also with Shift

  bool operator==(const MenuEntry&) const = default;
};

/// A menu of the menu bar.
struct Menu {
  std::string_view title;
  std::vector<MenuEntry> entries;

  bool operator==(const Menu&) const = default;
};

}  // namespace ostrel
