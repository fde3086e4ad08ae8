#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <memory>
#include <string>
#include <string_view>

#include "OstrelAgent/Daemon/ControlSocket.hpp"
#include "OstrelAgent/Daemon/DeviceCATrust.hpp"
#include "OstrelAgent/Extension/CaptureConfig.hpp"
#include "OstrelAgent/Extension/MenuBarAgent.hpp"
#include "OstrelAgent/Extension/NetworkConfigurations.hpp"
#include "OstrelAgent/Onboarding/ActivationRun.hpp"
#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "OstrelAgent/Status/StatusRefresher.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/OnboardingWindow.hpp"
#include "Platform/Shell.hpp"
#include "Platform/UserDefaults.hpp"
#include "Platform/UserNotifications.hpp"
#include "Platform/Workspace.hpp"

namespace ostrel {

/// Controls the onboarding and repair window: polls the Mac's setup, enrols, has the certificate trusted,
/// runs the activation. Main thread; closing the window ends the program.
class OnboardingFlowController : public std::enable_shared_from_this<OnboardingFlowController> {
 public:
  static constexpr std::chrono::milliseconds pollPeriod{5000};

  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    ChildProcesses& childProcesses;
    const Bundle& bundle;
    Log& log;
    UserDefaults& userDefaults;
    UserNotifications& notifications;
    Workspace& workspace;
    OnboardingWindow& window;
    Shell& shell;
  };

  /// The objects that the flow works with.
  struct Collaborators {
    std::shared_ptr<StatusRefresher> refresher;
    ControlSocket socket;
    DeviceCATrust trust;
    NetworkConfigurations configurations;
    MenuBarAgent menuBarAgent;
  };

  OnboardingFlowController(OnboardingMode mode, Services services, Collaborators collaborators);

  /// Opens the window and starts. Call once.
  void show();

 private:
  using EnrolmentAnswer = std::expected<JsonObject, ControlSocketError>;

  void perform(OnboardingAction action, const std::string& token);
  void windowWillClose();

  void refresh() { collaborators_.refresher->request(); }
  void publish(const SetupObservation& observation);
  void followEnrolment();
  void askWhetherEnrolled();

  void enrol(std::string_view typed);
  void finishEnrolment(const EnrolmentAnswer& answer);
  void forgetToken();
  void startTrust(bool thenActivate);
  void finishTrust(const DeviceCATrust::Outcome& outcome);
  void deferTrust();

  void startActivation();
  void activationFinished(ActivationState state);
  void showActivation(ActivationState state);
  void openExtensionSettings();
  void turnOnNetworkFilter();
  void finishNetworkFilter(const NetworkConfigurations::CaptureSaved& saved);

  /// Runs the work in the background and passes its result to `next` on the main thread, while this lives.
  template <class Work, class Next>
  void inBackground(Work work, Next next);
  void move(OnboardingEvent::Kind kind, std::string text = {});
  void clearActionError(OnboardingChecklist::Step step);
  void draw();

  Services services_;
  Collaborators collaborators_;
  OnboardingFlowModel model_;
  std::unique_ptr<ActivationRun> activation_;
  ScheduledWork pollTimer_;
  bool isTrusting_ = false;
  bool isSavingFilter_ = false;
  bool trustThenActivate_ = false;
  bool trustStepResolved_ = false;
  bool isOpen_ = false;
};

}  // namespace ostrel
