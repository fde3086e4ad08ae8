#include "OstrelAgent/Panel/StatusPanelActions.hpp"

namespace ostrel {

namespace {

struct Row {
  PanelAction action;
  std::string_view name;
  std::function<void()> StatusPanelActions::*callback;  ///< none for `openAgentWindow`, which takes a page
};

constexpr Row rows[] = {
    {PanelAction::enableEgressLock, "enableEgressLock", &StatusPanelActions::enableEgressLock},
    {PanelAction::enableTransparentProxy, "enableTransparentProxy",
     &StatusPanelActions::enableTransparentProxy},
    {PanelAction::trustDeviceCA, "trustDeviceCA", &StatusPanelActions::trustDeviceCA},
    {PanelAction::openRepairFlow, "openRepairFlow", &StatusPanelActions::openRepairFlow},
    {PanelAction::openAgentWindow, "openAgentWindow", nullptr},
    {PanelAction::installUpdate, "installUpdate", &StatusPanelActions::installUpdate},
    {PanelAction::checkNow, "checkNow", &StatusPanelActions::checkNow},
    {PanelAction::copyDiagnostics, "copyDiagnostics", &StatusPanelActions::copyDiagnostics},
    {PanelAction::sendDiagnostics, "sendDiagnostics", &StatusPanelActions::sendDiagnostics},
    {PanelAction::quitStatusIcon, "quitStatusIcon", &StatusPanelActions::quitStatusIcon},
};

const Row& rowOf(PanelAction action) { return rows[static_cast<std::size_t>(action)]; }

}  // namespace

PanelActionSet allPanelActions() {
  PanelActionSet actions;
  for (const auto& row : rows) actions.insert(row.action);
  return actions;
}

std::string_view nameOf(PanelAction action) { return rowOf(action).name; }

PanelActionSet StatusPanelActions::available() const {
  PanelActionSet actions;
  for (const auto& row : rows) {
    const bool isSet =
        row.callback == nullptr ? static_cast<bool>(openAgentWindow) : static_cast<bool>(this->*row.callback);
    if (isSet) actions.insert(row.action);
  }
  return actions;
}

void StatusPanelActions::perform(const PanelButton& button) const {
  if (!button.isEnabled) return;
  const auto& row = rowOf(button.action);
  if (row.callback == nullptr) {
    if (openAgentWindow) openAgentWindow(button.page.value_or(AgentPage::ecosystems));
  } else if (const auto& callback = this->*row.callback) {
    callback();
  }
}

}  // namespace ostrel
