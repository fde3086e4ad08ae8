#pragma once

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "Platform/StatusItem.hpp"

namespace ostrel {

/// A menu-bar item that remembers every icon it was given.
class FakeStatusItem final : public StatusItem {
 public:
  void install(Events events) override { events_ = std::move(events); }

  std::optional<Appearance> appearance() const override { return shownAppearance; }
  bool hasImage(std::string_view) const override { return hasImages; }
  bool hasSymbol(std::string_view) const override { return hasSymbols; }

  void show(const MenuBarIcon& icon) override {
    if (!events_.clicked) ADD_FAILURE() << "an icon is shown before the item is installed";
    shown.push_back(icon);
  }

  void showMenu(const std::vector<PanelButton>& buttons) override { menu = buttons; }

  // Each throws when nothing is installed.
  void click() const { events_.clicked(); }
  void press(const PanelButton& button) const { events_.menuPressed(button); }
  void change(std::optional<Appearance> appearance) {
    shownAppearance = appearance;
    events_.appearanceChanged();
  }

  std::vector<MenuBarIcon> shown;
  std::vector<PanelButton> menu;
  std::optional<Appearance> shownAppearance;
  bool hasImages = true;
  bool hasSymbols = false;

 private:
  Events events_;
};

}  // namespace ostrel
