#include "OstrelAgent/MenuBar/PanelPresenter.hpp"

#include <algorithm>
#include <utility>

namespace ostrel {

PanelPresenter::PanelPresenter(Services services)
    : services_(services),
      times_{.clockTime = [&format = services.timeFormat](Date date) { return format.clockTime(date); },
             .shortDate = [&format = services.timeFormat](Date date) { return format.shortDate(date); }} {}

void PanelPresenter::start(StatusPanelActions actions, HealthListener healthApplied,
                           std::function<void()> drawn) {
  actions_ = std::move(actions);
  healthApplied_ = std::move(healthApplied);
  drawn_ = std::move(drawn);
  services_.screens.onPanelButton(
      [actions = actions_](const PanelButton& button) { actions.perform(button); });
}

void PanelPresenter::publish(Snapshot snapshot) {
  model_.snap = std::move(snapshot);
  model_.hasReading = true;
  model_.settleUpdate(services_.clock.now());
  draw();
}

void PanelPresenter::applyHealth(const StatusReport::Health& health) {
  model_.snap.apply(health);
  healthApplied_(health);
  draw();
}

void PanelPresenter::open() {
  auto& screens = services_.screens;
  if (const auto height = screens.visibleHeight()) {
    model_.panelMaxHeight = std::max(0.0, *height - popoverChromeAllowance);
  }
  services_.shell.activate();
  screens.openPanel(content());
}

void PanelPresenter::draw() {
  if (isShown()) services_.screens.updatePanel(content());
  drawn_();
}

PanelContent PanelPresenter::content() const {
  return panelContent(model_, services_.clock.now(), times_, actions_.available());
}

}  // namespace ostrel
