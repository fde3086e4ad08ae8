#pragma once

#include <utility>

#include "Platform/StandardStreams.hpp"
#include "Platform/StatusItem.hpp"

namespace ostrel {

/// The status item as lines of standard output: its text, whenever it changes.
class ConsoleStatusItem final : public StatusItem {
 public:
  explicit ConsoleStatusItem(StandardStreams& streams) : streams_(streams) {}

  void install(Events events) override { events_ = std::move(events); }
  std::optional<Appearance> appearance() const override { return std::nullopt; }
  bool hasImage(std::string_view) const override { return false; }
  bool hasSymbol(std::string_view) const override { return false; }
  void show(const MenuBarIcon& icon) override;
  void showMenu(const std::vector<PanelButton>&) override {}

  void click() const;

  /// Presses a button as an entry of the item's menu.
  void press(const PanelButton& button) const;

 private:
  StandardStreams& streams_;
  Events events_;
};

}  // namespace ostrel
