#include "OstrelAgent/MenuBarController.hpp"

#include <algorithm>
#include <utility>

#include "OstrelAgent/DeviceManagementProbe.hpp"
#include "OstrelAgent/StatusRead.hpp"

namespace ostrel {

namespace {

/// Adds the network preferences to the snapshot, one load after the other, on whatever threads they complete.
void loadNetworkState(NetworkPreferences& preferences, const std::shared_ptr<Snapshot>& snapshot,
                      std::function<void()> done) {
  preferences.loadTransparentProxies([&preferences, snapshot, done = std::move(done)](const auto& proxies) {
    addTransparentProxies(*snapshot, proxies);
    preferences.loadContentFilter([snapshot, done](const auto& filter) {
      addContentFilter(*snapshot, filter);
      done();
    });
  });
}

}  // namespace

MenuBarController::MenuBarController(Services services, Controller helper)
    : services_(services),
      helper_(helper),
      statusRuns_(services.mainQueue),
      times_{.clockTime = [&format = services.timeFormat](Date date) { return format.clockTime(date); },
             .shortDate = [&format = services.timeFormat](Date date) { return format.shortDate(date); }} {}

void MenuBarController::start() {
  const auto weak = weak_from_this();
  const auto press = [weak](const PanelButton& button) {
    if (const auto self = weak.lock()) self->panelActions_.perform(button);
  };
  services_.statusItem.install({.clicked =
                                    [weak] {
                                      if (const auto self = weak.lock()) self->togglePanel();
                                    },
                                .appearanceChanged =
                                    [weak] {
                                      if (const auto self = weak.lock()) self->applyIcon(self->latest_);
                                    },
                                .menuPressed = press});
  panelActions_.quitStatusIcon = [&shell = services_.shell] { shell.terminate(); };
  services_.screens.onPanelButton(press);
  services_.statusItem.showMenu(statusItemMenu(panelActions_.available()));
  model_.snap = latest_;
  applyIcon(latest_);
  refresh();
  probeDeviceManagement();
  timer_ = services_.mainQueue.every(refreshPeriod, [weak] {
    if (const auto self = weak.lock()) self->refresh();
  });
}

void MenuBarController::refresh() {
  auto run = statusRuns_.begin();
  if (!run) return;
  services_.statusQueue.run(
      QualityOfService::utility, [weak = weak_from_this(), run = std::move(*run), helper = helper_,
                                  &queue = services_.mainQueue, &preferences = services_.networkPreferences] {
        auto snapshot = std::make_shared<Snapshot>(readStatus(helper, run.ending));
        loadNetworkState(preferences, snapshot, [weak, number = run.number, snapshot, &queue] {
          queue.post([weak, number, snapshot] {
            if (const auto self = weak.lock()) self->finishRefresh(number, std::move(*snapshot));
          });
        });
      });
}

void MenuBarController::togglePanel() {
  auto& screens = services_.screens;
  if (screens.isPanelShown()) return screens.closePanel();
  refresh();
  if (const auto height = screens.visibleHeight()) {
    model_.panelMaxHeight = std::max(0.0, *height - popoverChromeAllowance);
  }
  services_.shell.activate();
  screens.openPanel(content());
}

/// Asked once a process; the answer joins the snapshots from the next refresh on.
void MenuBarController::probeDeviceManagement() {
  services_.backgroundQueue.run(
      QualityOfService::utility,
      [weak = weak_from_this(), &children = services_.childProcesses, &queue = services_.mainQueue] {
        const bool isEnrolled = isEnrolledInDeviceManagement(children);
        queue.post([weak, isEnrolled] {
          if (const auto self = weak.lock()) self->mdmEnrolled_ = isEnrolled;
        });
      });
}

void MenuBarController::finishRefresh(std::uint64_t run, Snapshot snapshot) {
  const auto finish = statusRuns_.finish(run);
  if (finish.startsWaiting) refresh();
  if (finish.mayPublish) publish(std::move(snapshot));
}

void MenuBarController::publish(Snapshot snapshot) {
  snapshot.mdmEnrolled = mdmEnrolled_.value_or(false);
  model_.hasReading = true;
  // Nothing has changed at nearly every tick; only the times in an open panel go on then.
  if (snapshot != latest_) {
    latest_ = std::move(snapshot);
    applyIcon(latest_);
    model_.snap = latest_;
  }
  if (services_.screens.isPanelShown()) services_.screens.updatePanel(content());
}

/// Touches the status item only when its picture or text changes.
void MenuBarController::applyIcon(const Snapshot& snapshot) {
  const auto verdict = ProtectionVerdict::of(snapshot);
  auto& item = services_.statusItem;
  const auto palette = MenuBarPalette::matching(item.appearance());
  auto icon = MenuBarIcon::of(verdict, palette, item.hasImage(palette.glyphName()),
                              item.hasSymbol(MenuBarSign::of(verdict).symbol));
  if (icon == shownIcon_) return;
  item.show(icon);
  shownIcon_ = std::move(icon);
}

PanelContent MenuBarController::content() const {
  return panelContent(model_, services_.clock.now(), times_, panelActions_.available());
}

}  // namespace ostrel
