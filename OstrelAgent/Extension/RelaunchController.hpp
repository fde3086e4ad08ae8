#pragma once

#include <chrono>
#include <memory>

#include "OstrelAgent/Extension/MenuBarAgent.hpp"
#include "OstrelAgent/Notifications/RedNotifier.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/Shell.hpp"

namespace ostrel {

/// The relaunch role: restarts the menu-bar agent after a short wait and ends the process. Main thread.
class RelaunchController : public std::enable_shared_from_this<RelaunchController> {
 public:
  static constexpr std::chrono::milliseconds delay{5000};

  RelaunchController(MainQueue& mainQueue, BackgroundQueue& backgroundQueue, Shell& shell,
                     MenuBarAgent menuBarAgent, std::shared_ptr<RedNotifier> notifier);

  /// Starts the notifier and the wait. Call once.
  void applicationDidFinishLaunching();

 private:
  void restart();

  MainQueue& mainQueue_;
  BackgroundQueue& backgroundQueue_;
  Shell& shell_;
  MenuBarAgent menuBarAgent_;
  std::shared_ptr<RedNotifier> notifier_;
  ScheduledWork wait_;
};

}  // namespace ostrel
