#include "Shells/Console/ConsoleStatusItem.hpp"

#include "OstrelAgent/Status/MenuBarIcon.hpp"

namespace ostrel {

void ConsoleStatusItem::show(const MenuBarIcon& icon) { streams_.writeOutput(icon.text + "\n"); }

void ConsoleStatusItem::click() const {
  if (events_.clicked) events_.clicked();
}

void ConsoleStatusItem::press(const PanelButton& button) const {
  if (events_.menuPressed) events_.menuPressed(button);
}

}  // namespace ostrel
