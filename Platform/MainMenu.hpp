#pragma once

#include <string_view>
#include <vector>

namespace ostrel {

/// An entry of a menu. One without a title is a separator.
struct MenuEntry {
  std::string_view title;
  std::string_view action;         ///< what the view with the focus is asked to do
  std::string_view keyEquivalent;  ///< with the command key; a capital letter with shift, too

  bool operator==(const MenuEntry&) const = default;
};

/// A menu of the menu bar.
struct Menu {
  std::string_view title;
  std::vector<MenuEntry> entries;

  bool operator==(const Menu&) const = default;
};

}  // namespace ostrel
