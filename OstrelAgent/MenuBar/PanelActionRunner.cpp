#include "OstrelAgent/MenuBar/PanelActionRunner.hpp"

#include <utility>

#include "OstrelAgent/Panel/PanelMessages.hpp"
#include "Platform/InBackground.hpp"

namespace ostrel {

namespace {

constexpr const char* userReason = "user";
constexpr std::int32_t copyRefused = 1;  // the exit status that the notice names then

/// The health block of a response, or nullopt when it is missing or malformed.
std::optional<StatusReport::Health> healthOf(const JsonObject& answer) {
  return answer.member<StatusReport::Health>("health");
}

}  // namespace

PanelActionRunner::PanelActionRunner(Services services, Collaborators collaborators)
    : services_(services), collaborators_(std::move(collaborators)) {}

StatusPanelActions PanelActionRunner::callbacks() {
  const auto bound = [weak = weak_from_this()](auto action) {
    return [weak, action] {
      if (const auto self = weak.lock()) action(*self);
    };
  };
  StatusPanelActions callbacks;
  callbacks.enableEgressLock = bound([](PanelActionRunner& self) { self.enableEgressLock(); });
  callbacks.enableTransparentProxy = bound([](PanelActionRunner& self) { self.enableTransparentProxy(); });
  callbacks.trustDeviceCA = bound([](PanelActionRunner& self) { self.trustDeviceCA(); });
  callbacks.installUpdate = bound([](PanelActionRunner& self) { self.confirmAndInstallUpdate(); });
  callbacks.checkNow = bound([](PanelActionRunner& self) { self.checkNow(userReason); });
  callbacks.copyDiagnostics = bound([](PanelActionRunner& self) { self.copyDiagnostics(); });
  callbacks.sendDiagnostics = bound([](PanelActionRunner& self) { self.sendDiagnostics(); });
  callbacks.quitStatusIcon = [&shell = services_.shell] { shell.terminate(); };
  return callbacks;
}

void PanelActionRunner::checkNow(const std::string& reason) {
  const bool isUsers = reason == userReason;
  if (isUsers && model().checkinInFlight) return;
  if (isUsers) show(&StatusPanelModel::checkinInFlight, true);
  inBackground(
      isUsers ? QualityOfService::userInitiated : QualityOfService::utility,
      [socket = collaborators_.socket, reason] {
        const auto answer = socket.send("checkin", {{"reason", reason}});
        return CheckIn{checkinNotice(answer), answer ? healthOf(*answer) : std::nullopt};
      },
      [isUsers](PanelActionRunner& self, const CheckIn& checkIn) { self.finishCheckIn(checkIn, isUsers); });
}

void PanelActionRunner::finishCheckIn(const CheckIn& checkIn, bool isUsers) {
  if (checkIn.health) collaborators_.presenter->applyHealth(*checkIn.health);
  collaborators_.refresh();
  if (!isUsers) return;
  model().checkinInFlight = false;
  showNotice(&StatusPanelModel::checkinNotice, checkinNoticeToken_, checkIn.notice, checkinNoticeTime);
}

void PanelActionRunner::copyDiagnostics() {
  if (model().diagnosticsInFlight) return;
  show(&StatusPanelModel::diagnosticsInFlight, true);
  inBackground(
      QualityOfService::userInitiated,
      [helper = collaborators_.helper, arguments = diagnosticsArguments()] {
        return helper.runHelperCapturingStdout(arguments);
      },
      [](PanelActionRunner& self, const HelperRunner::HelperOutput& output) { self.finishCopy(output); });
}

void PanelActionRunner::finishCopy(const HelperRunner::HelperOutput& output) {
  const bool isRefused = output.status == 0 && !services_.pasteboard.setText(output.standardOutput);
  if (isRefused) services_.log.line("ostrel: could not copy the diagnostics");
  model().diagnosticsInFlight = false;
  showNotice(&StatusPanelModel::diagnosticsNotice, diagnosticsNoticeToken_,
             diagnosticsNotice(isRefused ? copyRefused : output.status), diagnosticsNoticeTime);
}

void PanelActionRunner::sendDiagnostics() {
  if (model().sendDiagnosticsInFlight) return;
  model().sendDiagnosticsError.reset();
  show(&StatusPanelModel::sendDiagnosticsInFlight, true);
  auto arguments = diagnosticsArguments();
  arguments.emplace_back("--send");
  inBackground(
      QualityOfService::userInitiated,
      [helper = collaborators_.helper, arguments = std::move(arguments), &clock = services_.clock] {
        const auto output = helper.runHelperCapturingStdout(arguments);
        return diagnosticsSending(output, clock.now());
      },
      [](PanelActionRunner& self, const DiagnosticsSending& sending) { self.finishSending(sending); });
}

void PanelActionRunner::finishSending(const DiagnosticsSending& sending) {
  if (sending.sentAt) model().diagnosticsSentAt = sending.sentAt;
  model().sendDiagnosticsError = sending.error;
  show(&StatusPanelModel::sendDiagnosticsInFlight, false);
}

void PanelActionRunner::confirmAndInstallUpdate() {
  if (model().updateInFlight || std::exchange(isAskingToInstall_, true)) return;
  services_.shell.activate();
  services_.alerts.show(installAlert(), [weak = weak_from_this()](std::size_t button) {
    const auto self = weak.lock();
    if (!self) return;
    self->isAskingToInstall_ = false;
    if (button == 0) self->installUpdate();
  });
}

void PanelActionRunner::installUpdate() {
  model().updateInFlightUntil = services_.clock.now() + updateTimeout;
  show(&StatusPanelModel::updateInFlight, true);
  inBackground(
      QualityOfService::userInitiated, [socket = collaborators_.socket] { return socket.send("update"); },
      [](PanelActionRunner& self, const std::expected<JsonObject, ControlSocketError>& answer) {
        if (!answer) self.presentUpdateFailure(answer.error());
      });
}

void PanelActionRunner::presentUpdateFailure(const ControlSocketError& error) {
  model().updateInFlightUntil.reset();
  show(&StatusPanelModel::updateInFlight, false);
  present(updateFailedAlert(error));
}

void PanelActionRunner::enableEgressLock() {
  if (std::exchange(isSavingLock_, true)) return;
  collaborators_.configurations.saveEgressLockConfiguration(
      [weak = weak_from_this()](const NetworkConfigurations::LockSaved& saved) {
        const auto self = weak.lock();
        if (!self) return;
        self->isSavingLock_ = false;
        if (!saved) {
          self->services_.log.line("ostrel: could not save the content filter: " + saved.error().description);
        }
        self->collaborators_.refresh();
      });
}

void PanelActionRunner::enableTransparentProxy() {
  // Two concurrent runs might each create a configuration.
  if (std::exchange(isSavingProxy_, true)) return;
  collaborators_.configurations.saveStaticCaptureConfig(
      services_.bundle, [weak = weak_from_this()](const NetworkConfigurations::CaptureSaved& saved) {
        if (const auto self = weak.lock()) self->finishTransparentProxy(saved);
      });
}

void PanelActionRunner::finishTransparentProxy(const NetworkConfigurations::CaptureSaved& saved) {
  isSavingProxy_ = false;
  if (!saved) services_.log.line("ostrel: could not save the transparent proxy: " + saved.error());
  collaborators_.refresh();
  if (!saved) present(filterOnFailedAlert(saved.error()));
}

void PanelActionRunner::trustDeviceCA() {
  if (std::exchange(isTrusting_, true)) return;
  inBackground(
      QualityOfService::userInitiated, [trust = collaborators_.trust] { return trust.ensureTrusted(); },
      [](PanelActionRunner& self, const DeviceCATrust::Outcome& outcome) { self.finishTrust(outcome); });
}

void PanelActionRunner::finishTrust(const DeviceCATrust::Outcome& outcome) {
  isTrusting_ = false;
  const bool hasFailed = outcome.kind == DeviceCATrust::Outcome::Case::failed;
  if (hasFailed) services_.log.line("ostrel: could not trust the device certificate: " + outcome.message);
  collaborators_.refresh();
  if (hasFailed) present(trustFailedAlert(outcome.message));
}

template <class Work, class Next>
void PanelActionRunner::inBackground(QualityOfService quality, Work work, Next next) {
  ostrel::inBackground(services_.backgroundQueue, quality, services_.mainQueue, weak_from_this(),
                       std::move(work), next);
}

std::vector<std::string> PanelActionRunner::diagnosticsArguments() const {
  return {"diagnostics", "--network-extension", networkExtensionStates(collaborators_.presenter->latest())};
}

void PanelActionRunner::show(bool StatusPanelModel::*flag, bool value) {
  model().*flag = value;
  draw();
}

void PanelActionRunner::showNotice(Notice notice, ScheduledWork& token, std::string text,
                                   std::chrono::milliseconds time) {
  model().*notice = std::move(text);
  token = services_.mainQueue.after(time, [weak = weak_from_this(), notice] {
    const auto self = weak.lock();
    if (!self) return;
    (self->model().*notice).reset();
    self->draw();
  });
  draw();
}

void PanelActionRunner::present(const Alert& alert) {
  services_.shell.activate();
  services_.alerts.show(alert, [](std::size_t) {});
}

}  // namespace ostrel
