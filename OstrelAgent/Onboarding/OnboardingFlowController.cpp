#include "OstrelAgent/Onboarding/OnboardingFlowController.hpp"

#include <utility>

#include "OstrelAgent/Notifications/RedNotifier.hpp"
#include "OstrelAgent/Onboarding/RepairFlow.hpp"
#include "OstrelAgent/Status/StatusRead.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "Platform/InBackground.hpp"

namespace ostrel {

namespace {

using Kind = OnboardingEvent::Kind;
using Step = OnboardingChecklist::Step;
using Texts = Copy::Onboarding;
namespace stages = onboardingstage;

std::string settingsUrl(int systemMajorVersion) {
  return systemMajorVersion >= 15 ? "x-apple.systempreferences:com.apple.LoginItems-Settings.extension"
                                  : "x-apple.systempreferences:com.apple.preference.security?Security";
}

std::string enrolmentError(const ControlSocketError& error) {
  auto message = error.userMessage(Copy::socketOpEnrolDevice.text());
  if (error.kind != ControlSocketError::Case::requestNotSerialised) return message;
  return Texts::errorEnrollment.with(message);
}

bool isApproved(const SetupObservation& observation) {
  return OnboardingChecklist::state(Step::approval, observation) == ChecklistStepState::satisfied;
}

}  // namespace

OnboardingFlowController::OnboardingFlowController(OnboardingMode mode, Services services,
                                                   Collaborators collaborators)
    : services_(services), collaborators_(std::move(collaborators)), model_(mode) {}

void OnboardingFlowController::show() {
  const auto weak = weak_from_this();
  (void)services_.userDefaults.set(onboardingFlowProcessIdentifierKey,
                                   services_.workspace.processIdentifier());
  isOpen_ = true;
  services_.window.open(onboardingContent(model_, false),
                        {.pressed =
                             [weak](OnboardingAction action, const std::string& token) {
                               if (const auto self = weak.lock()) self->perform(action, token);
                             },
                         .closed =
                             [weak] {
                               if (const auto self = weak.lock()) self->windowWillClose();
                             }});
  collaborators_.refresher->start([weak](const RefreshResult& result) {
    const auto self = weak.lock();
    if (self && self->isOpen_) self->publish(setupObservation(result.inputs));
  });
  pollTimer_ = services_.mainQueue.every(pollPeriod, [weak] {
    if (const auto self = weak.lock()) self->refresh();
  });
  services_.shell.activate();
  RedNotifier::requestAuthorizationIfNeeded(services_.notifications, services_.log);
  if (model_.mode == OnboardingMode::onboard) askWhetherEnrolled();
}

void OnboardingFlowController::perform(OnboardingAction action, const std::string& token) {
  if (!isOpen_) return;
  switch (action) {
    case OnboardingAction::enrol:
      return enrol(token);
    case OnboardingAction::retryTrust:
      return startTrust(trustThenActivate_);
    case OnboardingAction::deferTrust:
      return deferTrust();
    case OnboardingAction::reopenApprovalPrompt:
      return startActivation();
    case OnboardingAction::openExtensionSettings:
      return openExtensionSettings();
    case OnboardingAction::turnOnNetworkFilter:
      return turnOnNetworkFilter();
    case OnboardingAction::finish:
      return services_.window.close();
  }
}

void OnboardingFlowController::windowWillClose() {
  isOpen_ = false;
  const auto shown = services_.userDefaults.get<std::int64_t>(onboardingFlowProcessIdentifierKey);
  if (shown == services_.workspace.processIdentifier()) {
    (void)services_.userDefaults.remove(onboardingFlowProcessIdentifierKey);
  }
  pollTimer_ = nullptr;
  activation_ = nullptr;
  services_.shell.terminate();
}

void OnboardingFlowController::publish(const SetupObservation& observation) {
  model_.observation = observation;
  if (!activation_ && isApproved(observation)) model_.activation = activationstate::Idle{};
  if (model_.actionError &&
      OnboardingChecklist::state(model_.actionError->step, observation) == ChecklistStepState::satisfied) {
    model_.actionError.reset();
  }
  if (observation.statusRead && observation.enrolled) followEnrolment();
  const bool isOwed = observation.statusRead && observation.caTrustPending && !trustStepResolved_;
  if (isOwed && model_.mode == OnboardingMode::repair) {
    move(Kind::trustOwed, std::string(Texts::trustNeededOwedInRepair.text()));
  }
  draw();
}

/// Continues with the certificate when a poll finds the Mac enrolled while the window still asks for a token.
void OnboardingFlowController::followEnrolment() {
  if (!std::holds_alternative<stages::EnterToken>(model_.stage)) return;
  forgetToken();
  startTrust(!collaborators_.menuBarAgent.isInstalled());
}

void OnboardingFlowController::askWhetherEnrolled() {
  inBackground([socket = collaborators_.socket] { return socket.queryEnrolled(); },
               [](OnboardingFlowController& self, bool isEnrolled) {
                 if (isEnrolled) self.followEnrolment();
               });
}

void OnboardingFlowController::enrol(std::string_view typed) {
  auto token = acceptableToken(typed);
  if (!token) {
    move(Kind::tokenRejected, std::move(token.error()));
    return draw();
  }
  if (!std::holds_alternative<stages::EnterToken>(model_.stage)) return;
  model_.token = std::move(*token);
  move(Kind::enrolmentBegan);
  draw();
  inBackground(
      [socket = collaborators_.socket, extra = ControlSocket::Extra{{"enrollment_token", model_.token}}] {
        return socket.send("enroll", extra);
      },
      [](OnboardingFlowController& self, const EnrolmentAnswer& answer) { self.finishEnrolment(answer); });
}

void OnboardingFlowController::finishEnrolment(const EnrolmentAnswer& answer) {
  if (answer) {
    forgetToken();
    return startTrust(true);
  }
  move(Kind::enrolmentFailed, enrolmentError(answer.error()));
  draw();
}

void OnboardingFlowController::forgetToken() {
  model_.token.clear();
  services_.window.clearToken();
}

/// A running trust attempt is not repeated; it may only get the activation as its next step.
void OnboardingFlowController::startTrust(bool thenActivate) {
  trustThenActivate_ = thenActivate || (isTrusting_ && trustThenActivate_);
  if (std::exchange(isTrusting_, true)) return;
  move(Kind::trustBegan);
  draw();
  inBackground([trust = collaborators_.trust] { return trust.ensureTrusted(); },
               [](OnboardingFlowController& self, const DeviceCATrust::Outcome& outcome) {
                 self.finishTrust(outcome);
               });
}

void OnboardingFlowController::finishTrust(const DeviceCATrust::Outcome& outcome) {
  isTrusting_ = false;
  if (outcome.kind == DeviceCATrust::Outcome::Case::trusted) {
    trustStepResolved_ = true;
    move(Kind::trusted);
    if (trustThenActivate_) startActivation();
  } else if (outcome.kind == DeviceCATrust::Outcome::Case::cancelled) {
    move(Kind::trustRefused, std::string(Texts::trustNeededDismissed.text()));
  } else {
    move(Kind::trustRefused, outcome.message);
  }
  draw();
}

void OnboardingFlowController::deferTrust() {
  trustStepResolved_ = true;
  move(Kind::trustDeferred);
  draw();
}

void OnboardingFlowController::startActivation() {
  if (activation_) return;
  const auto executable = services_.bundle.executablePath();
  if (executable.empty()) {
    return showActivation(activationstate::Failed{std::string(Texts::activationCouldNotLocate.text())});
  }
  model_.activation = activationstate::Running{std::string(Texts::activationAsking.text())};
  const auto weak = weak_from_this();
  activation_ = std::make_unique<ActivationRun>(
      ActivationRun::Services{services_.mainQueue, services_.backgroundQueue, services_.childProcesses},
      executable,
      ActivationRun::Events{.progressed =
                                [weak](ActivationState state) {
                                  if (const auto self = weak.lock()) self->showActivation(std::move(state));
                                },
                            .ended =
                                [weak](ActivationState state) {
                                  if (const auto self = weak.lock())
                                    self->activationFinished(std::move(state));
                                }});
  draw();
}

void OnboardingFlowController::activationFinished(ActivationState state) {
  const bool isDone = std::holds_alternative<activationstate::Idle>(state);
  activation_ = nullptr;
  showActivation(std::move(state));
  if (isDone) refresh();
}

void OnboardingFlowController::showActivation(ActivationState state) {
  model_.activation = std::move(state);
  draw();
}

void OnboardingFlowController::openExtensionSettings() {
  if (services_.workspace.openUrl(settingsUrl(services_.workspace.systemMajorVersion()))) {
    clearActionError(Step::approval);
  } else if (!model_.actionError || model_.actionError->step == Step::approval) {
    model_.actionError = {Step::approval, std::string(Texts::errorOpenSettings.text())};
  }
  draw();
}

void OnboardingFlowController::turnOnNetworkFilter() {
  // Two concurrent runs might each create a configuration.
  if (std::exchange(isSavingFilter_, true)) return;
  clearActionError(Step::proxy);
  draw();
  collaborators_.configurations.saveStaticCaptureConfig(
      services_.bundle, [weak = weak_from_this()](const NetworkConfigurations::CaptureSaved& saved) {
        if (const auto self = weak.lock()) self->finishNetworkFilter(saved);
      });
}

void OnboardingFlowController::finishNetworkFilter(const NetworkConfigurations::CaptureSaved& saved) {
  isSavingFilter_ = false;
  if (!isOpen_) return;
  if (!saved) {
    model_.actionError = {Step::proxy, Texts::errorFilterOn.with(saved.error())};
    draw();
  }
  refresh();
}

template <class Work, class Next>
void OnboardingFlowController::inBackground(Work work, Next next) {
  ostrel::inBackground(services_.backgroundQueue, QualityOfService::userInitiated, services_.mainQueue,
                       weak_from_this(), std::move(work),
                       [next](OnboardingFlowController& self, const auto& result) {
                         if (self.isOpen_) next(self, result);
                       });
}

void OnboardingFlowController::move(Kind kind, std::string text) {
  if (auto next = stageAfter(model_.stage, {kind, std::move(text)})) model_.stage = std::move(*next);
}

void OnboardingFlowController::clearActionError(Step step) {
  if (model_.actionError && model_.actionError->step == step) model_.actionError.reset();
}

void OnboardingFlowController::draw() {
  if (isOpen_) services_.window.update(onboardingContent(model_, activation_ != nullptr));
}

}  // namespace ostrel
