#include "OstrelAgent/Panel/StatusPanelActions.hpp"

#include <iterator>
#include <type_traits>
#include <variant>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

using Callback = std::variant<std::function<void()> StatusPanelActions::*,
                              std::function<void(std::optional<AgentPage>)> StatusPanelActions::*>;

struct Row {
  PanelAction action;
  std::string_view name;
  Callback callback;
  const Message& title;                        ///< default title of its button
  bool StatusPanelModel::*inFlight = nullptr;  ///< work that disables the button and changes its title
  const Message* inFlightTitle = nullptr;
};

using Action = PanelAction;
using Callbacks = StatusPanelActions;
using Model = StatusPanelModel;

constexpr Row rows[] = {
    {Action::enableEgressLock, "enableEgressLock", &Callbacks::enableEgressLock,
     Copy::buttonEnableEgressLock},
    {Action::enableTransparentProxy, "enableTransparentProxy", &Callbacks::enableTransparentProxy,
     Copy::buttonTurnOnFilter},
    {Action::trustDeviceCA, "trustDeviceCA", &Callbacks::trustDeviceCA, Copy::buttonRetrustCA},
    {Action::openRepairFlow, "openRepairFlow", &Callbacks::openRepairFlow, Copy::buttonFix},
    {Action::openAgentWindow, "openAgentWindow", &Callbacks::openAgentWindow, Copy::buttonOpenAgentWindow},
    {Action::installUpdate, "installUpdate", &Callbacks::installUpdate, Copy::buttonInstall},
    {Action::checkNow, "checkNow", &Callbacks::checkNow, Copy::buttonCheckNow, &Model::checkinInFlight,
     &Copy::checkinInFlight},
    {Action::copyDiagnostics, "copyDiagnostics", &Callbacks::copyDiagnostics, Copy::buttonCopyDiagnostics,
     &Model::diagnosticsInFlight, &Copy::diagnosticsInFlight},
    {Action::sendDiagnostics, "sendDiagnostics", &Callbacks::sendDiagnostics, Copy::buttonSendDiagnostics,
     &Model::sendDiagnosticsInFlight, &Copy::diagnosticsSending},
    {Action::quitStatusIcon, "quitStatusIcon", &Callbacks::quitStatusIcon, Copy::buttonQuitStatusIcon},
};

consteval bool followsDeclaration() {
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    if (rows[i].action != static_cast<PanelAction>(i)) return false;
  }
  return rows[std::size(rows) - 1].action == PanelAction::quitStatusIcon;
}
static_assert(followsDeclaration(), "one row for each action, in the order of the enumeration");
static_assert(sizeof(StatusPanelActions) == std::size(rows) * sizeof(std::function<void()>),
              "one row for each callback");

const Row& rowOf(PanelAction action) { return rows[static_cast<std::size_t>(action)]; }

}  // namespace

PanelButton PanelButton::of(PanelAction action) { return of(action, rowOf(action).title); }

PanelButton PanelButton::of(PanelAction action, const Message& title) {
  return {.title = std::string(title.text()), .action = action};
}

PanelButton PanelButton::opening(AgentPage page) {
  const auto& title =
      page == AgentPage::containers ? Copy::buttonContainerTrust : rowOf(PanelAction::openAgentWindow).title;
  auto button = of(PanelAction::openAgentWindow, title);
  button.page = page;
  return button;
}

PanelButton PanelButton::during(const StatusPanelModel& model) const {
  const auto& row = rowOf(action);
  auto button = *this;
  if (row.inFlight == nullptr || !(model.*row.inFlight)) return button;
  button.title = row.inFlightTitle->text();
  button.isEnabled = false;
  return button;
}

PanelActionSet allPanelActions() {
  PanelActionSet actions;
  for (const auto& row : rows) actions.insert(row.action);
  return actions;
}

std::string_view nameOf(PanelAction action) { return rowOf(action).name; }

PanelActionSet StatusPanelActions::available() const {
  PanelActionSet actions;
  for (const auto& row : rows) {
    const auto isSet = [this](auto callback) { return static_cast<bool>(this->*callback); };
    if (std::visit(isSet, row.callback)) actions.insert(row.action);
  }
  return actions;
}

void StatusPanelActions::perform(const PanelButton& button) const {
  if (!button.isEnabled || !available().contains(button.action)) return;
  const auto run = [&](auto callback) {
    if constexpr (std::is_invocable_v<decltype(this->*callback), std::optional<AgentPage>>) {
      (this->*callback)(button.page);
    } else {
      (this->*callback)();
    }
  };
  std::visit(run, rowOf(button.action).callback);
}

}  // namespace ostrel
