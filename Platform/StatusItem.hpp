#pragma once

#include <functional>

namespace ostrel {

struct MenuBarIcon;

/// The program's item in the menu bar (NSStatusItem). Main thread.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  /// Puts the item into the menu bar; every click on it calls `clicked`.
  virtual void install(std::function<void()> clicked) = 0;

  /// Shows the icon with its texts.
  virtual void show(const MenuBarIcon& icon) = 0;
};

}  // namespace ostrel
