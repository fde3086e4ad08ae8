#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace ostrel {

/// What a button of the panel does; one for each member of `StatusPanelActions`.
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

/// Every action there is.
PanelActionSet allPanelActions();

/// The word of an action: "checkNow".
std::string_view nameOf(PanelAction action);

/// A page of the agent window.
enum class AgentPage { ecosystems, containers, egressLock, identity, health, notifications, help };

/// A button, by value: the screen shows it and hands it back when it is pressed.
struct PanelButton {
  std::string title;
  PanelAction action = PanelAction::checkNow;
  std::optional<AgentPage> page = std::nullopt;  ///< what `openAgentWindow` opens
  bool isEnabled = true;

  bool operator==(const PanelButton&) const = default;
};

/// The callbacks behind the panel's buttons, on the main thread. A button without a callback is not shown.
struct StatusPanelActions {
  std::function<void()> enableEgressLock;
  std::function<void()> enableTransparentProxy;
  std::function<void()> trustDeviceCA;
  std::function<void()> openRepairFlow;
  std::function<void(AgentPage)> openAgentWindow;
  std::function<void()> installUpdate;
  std::function<void()> checkNow;
  std::function<void()> copyDiagnostics;
  std::function<void()> sendDiagnostics;
  std::function<void()> quitStatusIcon;

  /// The actions that have a callback.
  PanelActionSet available() const;

  /// Runs the callback of a pressed button, if it has one and is not at work already.
  void perform(const PanelButton& button) const;
};

}  // namespace ostrel
