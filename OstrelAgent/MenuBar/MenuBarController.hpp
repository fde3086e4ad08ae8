#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "OstrelAgent/Containers/ContainerTrustPreferences.hpp"
#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/Extension/Reactivation.hpp"
#include "OstrelAgent/MenuBar/CheckInNudges.hpp"
#include "OstrelAgent/MenuBar/PanelActionRunner.hpp"
#include "OstrelAgent/Notifications/RedNotifier.hpp"
#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "OstrelAgent/Panel/StatusPanelModel.hpp"
#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "OstrelAgent/Status/StatusRead.hpp"
#include "OstrelAgent/Status/StatusRunLimiter.hpp"
#include "OstrelAgent/Text/TimeTexts.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/Clock.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/NetworkPreferences.hpp"
#include "Platform/Screens.hpp"
#include "Platform/Shell.hpp"
#include "Platform/StatusItem.hpp"
#include "Platform/TimeFormat.hpp"

namespace ostrel {

/// The menu-bar role: polls the status report and shows it as icon and panel. Lives on the main thread for
/// the whole process; work in the background holds it weakly.
class MenuBarController : public std::enable_shared_from_this<MenuBarController> {
 public:
  static constexpr std::chrono::milliseconds refreshPeriod{5000};
  static constexpr double popoverChromeAllowance = 40.0;

  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    BackgroundQueue& statusQueue;
    Clock& clock;
    ChildProcesses& childProcesses;
    NetworkPreferences& networkPreferences;
    TimeFormat& timeFormat;
    Shell& shell;
    StatusItem& statusItem;
    Screens& screens;
    const Bundle& bundle;
    Log& log;
    Pasteboard& pasteboard;
    Alerts& alerts;
    NetworkPath& networkPath;
    SystemWake& systemWake;
  };

  /// What the role does things with.
  struct Collaborators {
    HelperRunner helper;
    ControlSocket socket;
    DeviceCATrust trust;
    NetworkConfigurations configurations;
    Records records;
    ContainerTrustPreferences containerTrust;
    std::function<void()> openRepairFlow;
  };

  MenuBarController(Services services, Collaborators collaborators, std::shared_ptr<RedNotifier> redNotifier);

  /// Shows the icon, starts the first refresh and the timer. Call once.
  void start();

  /// Starts one refresh; its result is published when it ends.
  void refresh();

  /// Opens the panel, or closes it.
  void togglePanel();

 private:
  struct Refresh;

  /// What a refresh read: what came, and what it tells.
  struct Read {
    StatusInputs sources;
    StatusReading reading;
  };

  void probeDeviceManagement();
  void fillPanelActions();
  void finishRefresh(std::uint64_t run, std::uint64_t generation, std::shared_ptr<const Read> read);
  void publish(std::uint64_t generation, std::shared_ptr<const Read> read);
  void applyHealth(const StatusReport::Health& health);
  void applyIcon(const Snapshot& snapshot);
  void showLatest();
  void notify();
  void draw();
  bool isTimeNews() const;
  PanelContent content() const;

  Services services_;
  const std::shared_ptr<const Collaborators> collaborators_;
  std::shared_ptr<RedNotifier> redNotifier_;
  StatusRunLimiter statusRuns_;
  TimeTexts times_;
  StatusPanelModel model_;
  std::shared_ptr<PanelActionRunner> actions_;
  CheckInNudges nudges_;
  Reactivation reactivation_;
  StatusPanelActions actionCallbacks_;
  ScheduledWork timer_;
  std::optional<bool> mdmEnrolled_;
  Snapshot latest_;
  std::shared_ptr<const Read> lastRead_;  ///< by the last published refresh; what `latest_` shows
  std::optional<StatusReport::Health> appliedHealth_;  ///< the last that came with a check-in
  std::uint64_t healthGeneration_ = 0;                 ///< grows with each
  std::optional<MenuBarIcon> shownIcon_;
};

}  // namespace ostrel
