#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "OstrelAgent/Panel/StatusPanelModel.hpp"

namespace ostrel {

struct Message;

/// The action of a button of the panel; one for each member of `StatusPanelActions`, in the same order.
enum class PanelAction {
  enableEgressLock,
  enableTransparentProxy,
  trustDeviceCA,
  openRepairFlow,
  openAgentWindow,
  installUpdate,
  checkNow,
  copyDiagnostics,
  sendDiagnostics,
  quitStatusIcon,
};

using PanelActionSet = std::set<PanelAction>;

/// All actions.
PanelActionSet allPanelActions();

/// The name of an action: "checkNow".
std::string_view nameOf(PanelAction action);

/// A page of the agent window.
enum class AgentPage { ecosystems, containers, egressLock, identity, health, notifications, help };

/// A button: the screen shows it and passes it back when it is pressed.
struct PanelButton {
  std::string title;
  PanelAction action = PanelAction::checkNow;
  std::optional<AgentPage> page =
      std::nullopt;  ///< what `openAgentWindow` opens; nullopt for the page shown last
  bool isEnabled = true;

  /// The enabled button of an action, with the action's title or the given one.
  static PanelButton of(PanelAction action);
  static PanelButton of(PanelAction action, const Message& title);

  /// The button that opens a page of the agent window.
  static PanelButton opening(AgentPage page);

  /// The button for the model's current state: while its own work runs, it is disabled and has that work's
  /// title.
  PanelButton during(const StatusPanelModel& model) const;

  bool operator==(const PanelButton&) const = default;
};

/// The callbacks behind the panel's buttons, on the main thread. A button without a callback is not shown.
struct StatusPanelActions {
  std::function<void()> enableEgressLock;
  std::function<void()> enableTransparentProxy;
  std::function<void()> trustDeviceCA;
  std::function<void()> openRepairFlow;
  std::function<void(std::optional<AgentPage>)> openAgentWindow;  ///< nullopt: the page shown last
  std::function<void()> installUpdate;
  std::function<void()> checkNow;
  std::function<void()> copyDiagnostics;
  std::function<void()> sendDiagnostics;
  std::function<void()> quitStatusIcon;

  /// The actions that have a callback.
  PanelActionSet available() const;

  /// Runs the callback of a pressed button, if it has one and its work is not running.
  void perform(const PanelButton& button) const;
};

}  // namespace ostrel
