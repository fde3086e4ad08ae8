#include "OstrelAgent/Extension/RelaunchController.hpp"

#include <utility>

#include "Platform/InBackground.hpp"

namespace ostrel {

RelaunchController::RelaunchController(MainQueue& mainQueue, BackgroundQueue& backgroundQueue, Shell& shell,
                                       MenuBarAgent menuBarAgent, std::shared_ptr<RedNotifier> notifier)
    : mainQueue_(mainQueue),
      backgroundQueue_(backgroundQueue),
      shell_(shell),
      menuBarAgent_(std::move(menuBarAgent)),
      notifier_(std::move(notifier)) {}

void RelaunchController::applicationDidFinishLaunching() {
  notifier_->start();
  wait_ = mainQueue_.after(delay, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->restart();
  });
}

/// In the background, so that a signal still ends the process while launchd is slow.
void RelaunchController::restart() {
  inBackground(
      backgroundQueue_, QualityOfService::userInitiated, mainQueue_, weak_from_this(),
      [agent = menuBarAgent_] {
        agent.restart();
        return true;
      },
      [](RelaunchController& self, bool) { self.shell_.terminate(); });
}

}  // namespace ostrel
