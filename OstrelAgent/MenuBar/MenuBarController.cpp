#include "OstrelAgent/MenuBar/MenuBarController.hpp"

#include <utility>

#include "OstrelAgent/MenuBar/DeviceManagementProbe.hpp"
#include "OstrelAgent/Panel/PanelMenus.hpp"
#include "Platform/InBackground.hpp"

namespace ostrel {

MenuBarController::MenuBarController(Services services, Collaborators collaborators)
    : services_(services), collaborators_(std::move(collaborators)) {}

void MenuBarController::start() {
  const auto weakly = [weak = weak_from_this()](auto action) {
    return [weak, action](const auto&... arguments) {
      if (const auto self = weak.lock()) action(*self, arguments...);
    };
  };
  connectWindow();
  auto& [presenter, refresher, redNotifier, nudges, panelActions, reactivation, records, trust, containers,
         window] = collaborators_;
  const auto press = [panelActions](const PanelButton& button) { panelActions.perform(button); };
  services_.statusItem.install({.clicked = weakly([](auto& self) { self.togglePanel(); }),
                                .appearanceChanged = weakly([](auto& self) {
                                  self.applyIcon(self.collaborators_.presenter->latest());
                                }),
                                .menuPressed = press});
  services_.statusItem.showMenu(menuButtons(PanelMenu::statusItem, panelActions.available()));
  const auto drawWindow = weakly([](auto& self) { self.collaborators_.window->draw(); });
  presenter->start(panelActions, weakly([](auto& self, const auto& health) { self.healthApplied(health); }),
                   drawWindow);
  window->start(panelActions);
  redNotifier->start();
  applyIcon(presenter->latest());
  containers->start(weakly([](auto& self, const auto& names) { self.showRunningRuntimes(names); }),
                    drawWindow);
  refresher->start(weakly([](auto& self, const auto& result) { self.publish(result); }));
  probeDeviceManagement();
  timer_ = services_.mainQueue.every(refreshPeriod, weakly([](auto& self) {
                                       self.refresh();
                                       // Keeps the relative times of panel and window current while a helper
                                       // hangs.
                                       self.collaborators_.presenter->draw();
                                     }));
  nudges->start();
}

/// Makes buttons, notifications and a first notification switch lead to the window.
void MenuBarController::connectWindow() {
  const auto onWindow = [weak = std::weak_ptr(collaborators_.window)](auto action) {
    return [weak, action](const auto&... arguments) {
      if (const auto window = weak.lock()) action(*window, arguments...);
    };
  };
  collaborators_.panelActions.openAgentWindow =
      onWindow([](auto& window, std::optional<AgentPage> page) { window.open(page); });
  collaborators_.redNotifier->openContainerTrust =
      onWindow([](auto& window) { window.open(AgentPage::containers); });
  collaborators_.containerTrust->onEnable = onWindow([](auto& window) { window.requestAuthorization(); });
}

void MenuBarController::refresh() {
  // A run that ends takes the reading along; one that hangs must not delay it.
  if (!std::exchange(hasPublished_, false)) collaborators_.containers->refresh();
  collaborators_.refresher->request();
}

void MenuBarController::togglePanel() {
  auto& presenter = *collaborators_.presenter;
  if (presenter.isShown()) return presenter.close();
  refresh();
  presenter.open();
}

/// Probed once per process; the result is in the snapshots from the next refresh on.
void MenuBarController::probeDeviceManagement() {
  inBackground(
      services_.backgroundQueue, QualityOfService::utility, services_.mainQueue, weak_from_this(),
      [&children = services_.childProcesses] { return isEnrolledInDeviceManagement(children); },
      [](MenuBarController& self, bool isEnrolled) { self.mdmEnrolled_ = isEnrolled; });
}

void MenuBarController::publish(const RefreshResult& result) {
  const auto& inputs = result.inputs;
  auto snapshot = statusSnapshot(inputs);
  snapshot.mdmEnrolled = mdmEnrolled_.value_or(false);
  // A check-in that ended after this run started brought fresher health.
  if (appliedHealth_ && result.run <= runBeforeHealth_) snapshot.apply(*appliedHealth_);
  auto& nudges = *collaborators_.nudges;
  nudges.setEnrolled(snapshot.enrolled);
  std::optional<NetworkExtensionAssertion> assertion;
  if (inputs.transparentProxies && inputs.contentFilter) {
    nudges.nudgeOnNetworkExtensionChange(NetworkExtensionState::of(snapshot));
    const auto& filter = *inputs.contentFilter;
    assertion = {filter && filter->hasProvider, snapshot.egressLockEnabled, snapshot.transparentProxy,
                 mdmEnrolled_};
  }
  hasPublished_ = true;
  workAfter(assertion);
  applyIcon(snapshot);
  observe(snapshot);
  collaborators_.presenter->publish(std::move(snapshot));
  if (const auto version = pendingReactivation(inputs)) {
    collaborators_.reactivation.driveReactivationOnce(*version);
  }
}

/// Writes the record and reads the container runtimes, in one job since waking a thread costs more than the
/// reading. One write at a time, so that a slow disk blocks one thread only; the next refresh writes what was
/// skipped.
void MenuBarController::workAfter(std::optional<NetworkExtensionAssertion> assertion) {
  if (assertion && isRecording_->exchange(true)) assertion.reset();
  auto reading = collaborators_.containers->beginRefresh();
  if (!assertion && !reading) return;
  services_.backgroundQueue.run(QualityOfService::utility,
                                [records = collaborators_.records, assertion, isRecording = isRecording_,
                                 reading = std::move(reading)] {
                                  if (assertion) {
                                    records.recordNetworkExtensionAssertion(*assertion);
                                    *isRecording = false;
                                  }
                                  if (reading) reading();
                                });
}

void MenuBarController::healthApplied(const StatusReport::Health& health) {
  appliedHealth_ = health;
  runBeforeHealth_ = collaborators_.refresher->latestRun();
  applyIcon(collaborators_.presenter->latest());
  observe(collaborators_.presenter->latest());
}

/// Passes the reading to the notifier, which needs each one since time counts there, and to the containers
/// page.
void MenuBarController::observe(const Snapshot& snapshot) {
  auto& notifier = *collaborators_.redNotifier;
  const auto now = services_.clock.now();
  notifier.observe(ProtectionVerdict::of(snapshot), now);
  auto block = ContainerBlock::read(snapshot.runtimeTrust);
  if (block) {
    notifier.observeContainerBlocks(block->runtimes, collaborators_.containerTrust->notify(), now);
  } else {
    notifier.observeContainerBlocks({}, {}, now);
  }
  collaborators_.containers->publish(std::move(block));
}

void MenuBarController::showRunningRuntimes(std::vector<std::string> names) {
  auto& presenter = *collaborators_.presenter;
  presenter.model().runningContainerRuntimes = std::move(names);
  presenter.draw();
}

/// Touches the status item only when its picture or text changes.
void MenuBarController::applyIcon(const Snapshot& snapshot) {
  const auto verdict = ProtectionVerdict::of(snapshot);
  auto& item = services_.statusItem;
  const auto palette = MenuBarPalette::matching(item.appearance());
  auto icon = MenuBarIcon::of(verdict, palette, item.hasImage(palette.glyphName()),
                              item.hasSymbol(VerdictSymbols::of(verdict).symbol));
  if (icon == shownIcon_) return;
  item.show(icon);
  shownIcon_ = std::move(icon);
}

}  // namespace ostrel
