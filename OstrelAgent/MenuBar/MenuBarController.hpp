#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>

#include "OstrelAgent/Containers/ContainersPageController.hpp"
#include "OstrelAgent/Extension/Reactivation.hpp"
#include "OstrelAgent/Extension/Records.hpp"
#include "OstrelAgent/MenuBar/AgentWindowController.hpp"
#include "OstrelAgent/MenuBar/CheckInNudges.hpp"
#include "OstrelAgent/MenuBar/PanelPresenter.hpp"
#include "OstrelAgent/Notifications/RedNotifier.hpp"
#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "OstrelAgent/Status/StatusRefresher.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/Clock.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/StatusItem.hpp"

namespace ostrel {

/// The menu-bar role: refreshes the status every five seconds and shows it as icon, notifications, panel and
/// window. Main thread; lives as long as the process; background work holds it weakly.
class MenuBarController : public std::enable_shared_from_this<MenuBarController> {
 public:
  static constexpr std::chrono::milliseconds refreshPeriod{5000};

  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    Clock& clock;
    ChildProcesses& childProcesses;
    StatusItem& statusItem;
  };

  /// The objects that the role works with.
  struct Collaborators {
    std::shared_ptr<PanelPresenter> presenter;
    std::shared_ptr<StatusRefresher> refresher;
    std::shared_ptr<RedNotifier> redNotifier;
    std::shared_ptr<CheckInNudges> nudges;
    StatusPanelActions panelActions;
    Reactivation reactivation;
    Records records;
    std::shared_ptr<ContainerTrustPreferences> containerTrust;
    std::shared_ptr<ContainersPageController> containers;
    std::shared_ptr<AgentWindowController> window;
  };

  MenuBarController(Services services, Collaborators collaborators);

  /// Shows the icon, starts the first refresh and the timer. Call once.
  void start();

  /// Requests a status run, with a reading of the container runtimes.
  void refresh();

  /// Opens the panel, or closes it.
  void togglePanel();

 private:
  void connectWindow();
  void probeDeviceManagement();
  void publish(const RefreshResult& result);
  void workAfter(std::optional<NetworkExtensionAssertion> assertion);
  void healthApplied(const StatusReport::Health& health);
  void applyIcon(const Snapshot& snapshot);
  void observe(const Snapshot& snapshot);
  void showRunningRuntimes(std::vector<std::string> names);

  Services services_;
  Collaborators collaborators_;
  ScheduledWork timer_;
  std::optional<bool> mdmEnrolled_;
  std::optional<StatusReport::Health> appliedHealth_;  ///< health block of the latest check-in
  std::uint64_t runBeforeHealth_ = 0;                  ///< latest run started before it
  bool hasPublished_ = false;                          ///< since the last request
  std::optional<MenuBarIcon> shownIcon_;
  std::shared_ptr<std::atomic<bool>> isRecording_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace ostrel
