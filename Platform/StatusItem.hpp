#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/Appearance.hpp"

namespace ostrel {

struct MenuBarIcon;
struct PanelButton;

/// The program's item in the menu bar (NSStatusItem with its button). Main thread.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  /// Callbacks of the item, on the main thread, never inside one of its own calls.
  struct Events {
    std::function<void()> clicked;
    std::function<void()> appearanceChanged;
    std::function<void(const PanelButton&)> menuPressed;
  };

  /// Puts the item into the menu bar. Call once, before all others.
  virtual void install(Events events) = 0;

  /// Appearance of the menu bar; nullopt while unknown.
  virtual std::optional<Appearance> appearance() const = 0;

  /// True when the item can draw the glyph image of that name from the bundle's resources.
  virtual bool hasImage(std::string_view name) const = 0;

  /// True when the system has the symbol of that name.
  virtual bool hasSymbol(std::string_view name) const = 0;

  /// Shows the icon with its text as tooltip and accessible label.
  virtual void show(const MenuBarIcon& icon) = 0;

  /// Sets the item's menu, on desktops that offer one besides the click.
  virtual void showMenu(const std::vector<PanelButton>& buttons) = 0;
};

}  // namespace ostrel
