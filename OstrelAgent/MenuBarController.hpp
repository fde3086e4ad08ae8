#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "OstrelAgent/HelperRunner.hpp"
#include "OstrelAgent/PanelContent.hpp"
#include "OstrelAgent/RedNotifier.hpp"
#include "OstrelAgent/StatusPanelActions.hpp"
#include "OstrelAgent/StatusPanelModel.hpp"
#include "OstrelAgent/StatusRuns.hpp"
#include "OstrelAgent/TimeTexts.hpp"
#include "OstrelAgent/Verdict.hpp"
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
  };

  MenuBarController(Services services, HelperRunner helper, std::shared_ptr<RedNotifier> redNotifier);

  /// Shows the icon, starts the first refresh and the timer. Call once.
  void start();

  /// Starts one refresh; its result is published when it ends.
  void refresh();

  /// Opens the panel, or closes it.
  void togglePanel();

 private:
  void probeDeviceManagement();
  void finishRefresh(std::uint64_t run, std::shared_ptr<const Snapshot> read);
  void publish(std::shared_ptr<const Snapshot> read);
  void applyIcon(const Snapshot& snapshot);
  PanelContent content() const;

  Services services_;
  HelperRunner helper_;
  std::shared_ptr<RedNotifier> redNotifier_;
  StatusRuns statusRuns_;
  TimeTexts times_;
  StatusPanelModel model_;
  StatusPanelActions panelActions_;
  ScheduledWork timer_;
  std::optional<bool> mdmEnrolled_;
  Snapshot latest_;
  std::shared_ptr<const Snapshot>
      lastRead_;  ///< as the last published refresh read it, and as `latest_` shows it
  std::optional<MenuBarIcon> shownIcon_;
};

}  // namespace ostrel
