#include "OstrelAgent/Extension/Controller.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Platform/InBackground.hpp"

namespace ostrel {

namespace {

constexpr const char* daemonLaunchFile = "/Library/LaunchDaemons/tech.brenn.ostrel-agent-endpoint.plist";

// NEVPNErrorConfigurationInvalid and NEVPNErrorConfigurationStale of <NetworkExtension/NEVPNManager.h>.
constexpr int configurationInvalid = 1;
constexpr int configurationStale = 4;

/// The messages of an action; like the whole command line they are English.
struct Texts {
  Controller::Action action;
  std::string_view word;
  std::string_view header;
  std::string_view approval;
  std::string_view done;
};

constexpr Texts rows[] = {
    {Controller::Action::activate, "activate", "==> activating the System Extension…",
     "approval required → open System Settings ▸ General ▸ Login Items & Extensions (older macOS: Privacy & "
     "Security) and Allow the Ostrel Guard system extension. Leave this running: the moment you approve, "
     "setup "
     "finishes on its own — no need to re-run activate.",
     "transparent proxy enabled — npm registry traffic now flows through Ostrel Guard."},
    {Controller::Action::deactivate, "deactivate", "==> deactivating the System Extension…",
     "approval required → macOS is asking you to approve REMOVING the Ostrel Agent system extension. Open "
     "System Settings ▸ General ▸ Login Items & Extensions (older macOS: Privacy & Security) and allow the "
     "removal. Leave this running: the uninstall continues as soon as you approve.",
     "transparent proxy + daemon removed — see the helper output above for any manual step still owed"},
    {Controller::Action::reactivate, "reactivate", "==> re-activating the System Extension (post-upgrade)…",
     "re-activation needs approval that has not propagated yet — deferring (sysext stays on the old version)",
     "System Extension re-activated — Ostrel Guard is now on the new version."},
};

const Texts& textsOf(Controller::Action action) { return *std::ranges::find(rows, action, &Texts::action); }

std::string missingDaemon(const std::string& helperPath) {
  return "no enforcement daemon installed — activate wires the System Extension onto the root daemon but "
         "never "
         "installs one. Install it first as root:\n  sudo \"" +
         helperPath +
         "\" install --system --token zq_org_…\n(or deploy via MDM), then re-run: OstrelAgent activate";
}

}  // namespace

Controller::Controller(Command command, Services services, HelperRunner helper,
                       NetworkConfigurations configurations, MenuBarAgent menuBarAgent)
    : command_(command),
      services_(services),
      helper_(helper),
      configurations_(std::move(configurations)),
      menuBarAgent_(std::move(menuBarAgent)) {}

std::optional<Controller::Action> Controller::actionOf(std::string_view word) {
  const auto* row = std::ranges::find(rows, word, &Texts::word);
  if (row == std::end(rows)) return std::nullopt;
  return row->action;
}

bool Controller::isTransientNEConfigRace(const PlatformError& error) {
  return error.domain == vpnErrorDomain &&
         (error.code == configurationInvalid || error.code == configurationStale);
}

void Controller::run() {
  if (command_.action == Action::activate && !services_.files.exists(daemonLaunchFile)) {
    return fail(missingDaemon(helper_.helperPath()));
  }
  if (command_.action == Action::deactivate) return submit();
  // Checked before the system is asked for anything: without hosts there is nothing to set up.
  auto config = NetworkConfigurations::staticCaptureConfig(services_.bundle);
  if (!config) return fail(config.error());
  captureConfig_ = std::move(*config);
  submit();
}

void Controller::submit() {
  const bool isRemoval = command_.action == Action::deactivate;
  print(textsOf(command_.action).header);
  state_ = State::submitted;
  services_.systemExtensions.submit(
      isRemoval ? SystemExtensionAction::deactivation : SystemExtensionAction::activation,
      systemExtensionIdentifier, weak_from_this());
}

/// Only the first answer to the request counts.
bool Controller::isRequestOpen() const {
  return state_ == State::submitted || state_ == State::awaitingApproval;
}

SystemExtensionReplacement Controller::replacementOfInstalled() {
  return SystemExtensionReplacement::replace;
}

void Controller::needsUserApproval() {
  if (state_ != State::submitted) return;
  const auto text = textsOf(command_.action).approval;
  // A re-activation runs unattended and is tried again at a later login.
  if (command_.action == Action::reactivate) return fail(text);
  state_ = State::awaitingApproval;
  print(text);
}

void Controller::failed(const PlatformError& error) {
  if (!isRequestOpen()) return;
  fail("system extension " + std::string(textsOf(command_.action).word) + " failed: " + error.description);
}

void Controller::finished(SystemExtensionResult result) {
  if (!isRequestOpen()) return;
  state_ = State::configuring;
  print("system extension " + std::string(textsOf(command_.action).word) +
        ": result=" + std::to_string(static_cast<int>(result)));
  if (command_.action == Action::deactivate) return removeProxyThenUninstall();
  configureProxy(1);
}

void Controller::configureProxy(int attempt) {
  configurations_.saveTransparentProxyConfiguration(captureConfig_,
                                                    [weak = weak_from_this(), attempt](const auto& saved) {
                                                      const auto self = weak.lock();
                                                      if (!self) return;
                                                      if (!saved)
                                                        return self->retryOrFail(attempt, saved.error());
                                                      self->configureEgressLockFilter();
                                                    });
}

void Controller::retryOrFail(int attempt, const NetworkConfigurations::ProxyFailure& failure) {
  const auto description = failure.description();
  if (!isTransientNEConfigRace(failure.error) || attempt >= maxAttempts) return fail(description);
  const int next = attempt + 1;
  print(description + " — sysext/NE registration still settling, retry " + std::to_string(next) + "/" +
        std::to_string(maxAttempts) + " in 1.5s");
  retry_ = services_.mainQueue.after(delayBetweenAttempts, [weak = weak_from_this(), next] {
    if (const auto self = weak.lock()) self->configureProxy(next);
  });
}

void Controller::configureEgressLockFilter() {
  configurations_.saveEgressLockConfiguration([weak = weak_from_this()](const auto& saved) {
    const auto self = weak.lock();
    if (!self) return;
    self->print(saved
                    ? "egress lock enabled — reaching a captured registry any way other than through Ostrel "
                      "Guard is now denied."
                    : "egress lock NOT enabled (" + saved.error().description +
                          ") — direct egress to captured registries stays possible; capture itself is "
                          "unaffected");
    self->finishProxyConfigured();
  });
}

void Controller::finishProxyConfigured() {
  if (command_.action == Action::reactivate) return finish(textsOf(command_.action).done);
  inBackground(
      [agent = menuBarAgent_] {
        agent.install();
        return 0;
      },
      [](Controller& self, std::int32_t) { self.finish(textsOf(self.command_.action).done); });
}

void Controller::removeProxyThenUninstall() {
  configurations_.removeTransparentProxies([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->removeAgentThenUninstall();
  });
}

void Controller::removeAgentThenUninstall() {
  inBackground(
      [agent = menuBarAgent_] {
        agent.remove();
        return 0;
      },
      [](Controller& self, std::int32_t) { self.uninstall(); });
}

void Controller::uninstall() {
  if (command_.extensionOnly) {
    return finish(
        "system extension + proxy configuration removed — the root uninstall that dispatched this owns the "
        "rest");
  }
  inBackground(
      [helper = helper_] {
        return helper.runHelper({"uninstall", "--untrust-ca", "--removal-kind=app_deactivate"});
      },
      [](Controller& self, std::int32_t status) { self.finishUninstall(status); });
}

void Controller::finishUninstall(std::int32_t status) {
  if (status == 0) return finish(textsOf(command_.action).done);
  print("proxy removed; ostrel-agent-endpoint uninstall exited " + std::to_string(status));
  end(1);
}

/// Runs work that blocks, so that a signal ends the process meanwhile, too.
void Controller::inBackground(std::function<std::int32_t()> work,
                              std::function<void(Controller&, std::int32_t)> next) {
  ostrel::inBackground(services_.backgroundQueue, QualityOfService::userInitiated, services_.mainQueue,
                       weak_from_this(), std::move(work), std::move(next));
}

void Controller::print(std::string_view line) { services_.streams.writeOutput(std::string(line) + "\n"); }

void Controller::finish(std::string_view line) {
  print(line);
  end(0);
}

void Controller::fail(std::string_view line) {
  services_.streams.writeError(std::string(line) + "\n");
  end(1);
}

void Controller::end(int status) {
  state_ = State::ended;
  services_.shell.terminate(status);
}

}  // namespace ostrel
