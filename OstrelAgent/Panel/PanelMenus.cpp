#include "OstrelAgent/Panel/PanelMenus.hpp"

#include <optional>
#include <span>

namespace ostrel {

namespace {

using Action = PanelAction;

struct MenuItem {
  PanelAction action;
  std::optional<AgentPage> page = std::nullopt;
};

constexpr MenuItem headerItems[] = {{Action::checkNow}};
constexpr MenuItem footerItems[] = {{Action::openAgentWindow}, {Action::copyDiagnostics}};
constexpr MenuItem moreItems[] = {
    {Action::sendDiagnostics}, {Action::openAgentWindow, AgentPage::containers}, {Action::quitStatusIcon}};
constexpr MenuItem statusItemItems[] = {
    {Action::checkNow}, {Action::openAgentWindow}, {Action::quitStatusIcon}};

std::span<const MenuItem> itemsOf(PanelMenu menu) {
  switch (menu) {
    case PanelMenu::header:
      return headerItems;
    case PanelMenu::footer:
      return footerItems;
    case PanelMenu::more:
      return moreItems;
    case PanelMenu::statusItem:
      return statusItemItems;
  }
  return {};
}

}  // namespace

std::vector<PanelButton> menuButtons(PanelMenu menu, const PanelActionSet& available) {
  std::vector<PanelButton> buttons;
  for (const auto& item : itemsOf(menu)) {
    if (!available.contains(item.action)) continue;
    buttons.push_back(item.page ? PanelButton::opening(*item.page) : PanelButton::of(item.action));
  }
  return buttons;
}

}  // namespace ostrel
