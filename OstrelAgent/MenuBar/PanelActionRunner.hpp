#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OstrelAgent/Daemon/ControlSocket.hpp"
#include "OstrelAgent/Daemon/DeviceCATrust.hpp"
#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/Extension/NetworkConfigurations.hpp"
#include "OstrelAgent/MenuBar/PanelPresenter.hpp"
#include "OstrelAgent/Panel/PanelMessages.hpp"
#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "OstrelAgent/Panel/StatusPanelModel.hpp"
#include "OstrelAgent/Status/StatusReport.hpp"
#include "Platform/Alerts.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/Bundle.hpp"
#include "Platform/Clock.hpp"
#include "Platform/Log.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/Pasteboard.hpp"
#include "Platform/Shell.hpp"

namespace ostrel {

/// Runs the actions of the panel's buttons and shows their outcome in the panel. Main thread; background work
/// holds it weakly. An action that is still running is not started again.
class PanelActionRunner : public std::enable_shared_from_this<PanelActionRunner> {
 public:
  static constexpr std::chrono::milliseconds checkinNoticeTime{6000};
  static constexpr std::chrono::milliseconds diagnosticsNoticeTime{8000};
  static constexpr std::chrono::seconds updateTimeout{900};

  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    Clock& clock;
    const Bundle& bundle;
    Log& log;
    Shell& shell;
    Pasteboard& pasteboard;
    Alerts& alerts;
  };

  struct Collaborators {
    std::shared_ptr<PanelPresenter> presenter;
    std::function<void()> refresh;  ///< requests a refresh of the status
    HelperRunner helper;
    ControlSocket socket;
    DeviceCATrust trust;
    NetworkConfigurations configurations;
  };

  PanelActionRunner(Services services, Collaborators collaborators);

  /// Callbacks for the actions, which hold this object weakly.
  StatusPanelActions callbacks();

  /// Asks the daemon for a check-in; only the reason "user" shows in the panel.
  void checkNow(const std::string& reason);

 private:
  using Notice = std::optional<std::string> StatusPanelModel::*;

  struct CheckIn {
    std::string notice;
    std::optional<StatusReport::Health> health;
  };

  void finishCheckIn(const CheckIn& checkIn, bool isUsers);
  void copyDiagnostics();
  void finishCopy(const HelperRunner::HelperOutput& output);
  void sendDiagnostics();
  void finishSending(const DiagnosticsSending& sending);
  void confirmAndInstallUpdate();
  void installUpdate();
  void presentUpdateFailure(const ControlSocketError& error);
  void enableEgressLock();
  void enableTransparentProxy();
  void finishTransparentProxy(const NetworkConfigurations::CaptureSaved& saved);
  void trustDeviceCA();
  void finishTrust(const DeviceCATrust::Outcome& outcome);

  /// Runs the work in the background and passes its result to `next` on the main thread, while this lives.
  template <class Work, class Next>
  void inBackground(QualityOfService quality, Work work, Next next);
  std::vector<std::string> diagnosticsArguments() const;
  void show(bool StatusPanelModel::*flag, bool value);
  void showNotice(Notice notice, ScheduledWork& token, std::string text, std::chrono::milliseconds time);
  void present(const Alert& alert);
  StatusPanelModel& model() { return collaborators_.presenter->model(); }
  void draw() { collaborators_.presenter->draw(); }

  Services services_;
  Collaborators collaborators_;
  ScheduledWork checkinNoticeToken_;  ///< clears the notice; replaced by the next notice's
  ScheduledWork diagnosticsNoticeToken_;
  bool isAskingToInstall_ = false;
  bool isSavingLock_ = false;
  bool isSavingProxy_ = false;
  bool isTrusting_ = false;
};

}  // namespace ostrel
