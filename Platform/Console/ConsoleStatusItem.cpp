#include "Platform/Console/ConsoleStatusItem.hpp"

#include "OstrelAgent/Verdict.hpp"

namespace ostrel {

void ConsoleStatusItem::show(const MenuBarIcon& icon) { streams_.writeOutput(icon.text + "\n"); }

void ConsoleStatusItem::click() const {
  if (clicked_) clicked_();
}

}  // namespace ostrel
