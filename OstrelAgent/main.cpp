#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "OstrelAgent/Daemon/ControlSocket.hpp"
#include "OstrelAgent/Extension/CommandLine.hpp"
#include "OstrelAgent/Extension/Controller.hpp"
#include "OstrelAgent/Extension/RelaunchController.hpp"
#include "OstrelAgent/MenuBar/MenuBarController.hpp"
#include "OstrelAgent/MenuBar/SingleInstanceLock.hpp"
#include "OstrelAgent/Notifications/RedNotifier.hpp"
#include "OstrelAgent/Onboarding/OnboardingFlowController.hpp"
#include "OstrelAgent/Onboarding/RepairFlow.hpp"
#include "OstrelAgent/Text/EditMenu.hpp"
#include "OstrelAgent/Text/Translation.hpp"
#include "Platform/Host.hpp"

namespace ostrel {

namespace {

HelperRunner helperRunner(const Host& host) {
  return {host.bundle, host.files, host.childProcesses, host.standardStreams};
}

MenuBarAgent menuBarAgent(const Host& host) {
  return {host.bundle, host.files, host.childProcesses, host.standardStreams, host.userAccount};
}

ControlSocket controlSocket(const Host& host) { return {host.unixSockets, host.files}; }

DeviceCATrust deviceCATrust(const Host& host) {
  return {controlSocket(host), host.files, host.childProcesses, host.userAccount};
}

Records records(const Host& host) { return {host.files, host.clock, host.userAccount}; }

NetworkConfigurations networkConfigurations(const Host& host) {
  return {host.networkPreferences, host.mainQueue, host.log, records(host)};
}

std::function<void()> repairFlowOpener(const Host& host) {
  return [services = RepairFlowServices{.bundle = host.bundle,
                                        .userDefaults = host.userDefaults,
                                        .workspace = host.workspace,
                                        .childProcesses = host.childProcesses,
                                        .clock = host.clock,
                                        .log = host.log},
          startedAt = std::make_shared<std::optional<Date>>()] { openRepairFlow(services, *startedAt); };
}

std::shared_ptr<RedNotifier> redNotifier(const Host& host, std::function<void()> openRepairFlow) {
  return std::make_shared<RedNotifier>(
      RedNotifier::Services{
          .notifications = host.userNotifications, .userDefaults = host.userDefaults, .log = host.log},
      std::move(openRepairFlow));
}

/// On a host that is gone before that of the icon is made; a signal ends the wait at once.
std::optional<SingleInstance::Claim> claimMenuBar() {
  const auto lifetime = makeHost(Presence::questions);
  auto& host = lifetime->services();
  return claimMenuBar(host.menuBarInstance, host.standardStreams, host.log);
}

int runMenuBar() {
  const auto claim = claimMenuBar();
  if (!claim) return 0;
  const auto lifetime = makeHost(Presence::person);
  auto& host = lifetime->services();
  installTranslation(host.bundle, host.log);
  host.shell.setActivationPolicy(ActivationPolicy::accessory);
  const auto openRepairFlow = repairFlowOpener(host);
  const auto controller = std::make_shared<MenuBarController>(
      MenuBarController::Services{
          .mainQueue = host.mainQueue,
          .backgroundQueue = host.backgroundQueue,
          .statusQueue = host.statusQueue,
          .clock = host.clock,
          .childProcesses = host.childProcesses,
          .networkPreferences = host.networkPreferences,
          .timeFormat = host.timeFormat,
          .shell = host.shell,
          .statusItem = host.statusItem,
          .screens = host.screens,
          .bundle = host.bundle,
          .log = host.log,
          .pasteboard = host.pasteboard,
          .alerts = host.alerts,
          .networkPath = host.networkPath,
          .systemWake = host.systemWake,
      },
      MenuBarController::Collaborators{
          .helper = helperRunner(host),
          .socket = controlSocket(host),
          .trust = deviceCATrust(host),
          .configurations = networkConfigurations(host),
          .records = records(host),
          .containerTrust = ContainerTrustPreferences(host.userDefaults),
          .openRepairFlow = openRepairFlow,
      },
      redNotifier(host, openRepairFlow));
  controller->start();
  return host.shell.run();
}

int fail(int status, const std::string& sentence) {
  std::fputs(sentence.c_str(), stderr);
  return status;
}

int runRelaunch() {
  const auto lifetime = makeHost(Presence::unseen);
  auto& host = lifetime->services();
  installTranslation(host.bundle, host.log);
  host.shell.setActivationPolicy(ActivationPolicy::accessory);
  const auto controller =
      std::make_shared<RelaunchController>(host.mainQueue, host.backgroundQueue, host.shell,
                                           menuBarAgent(host), redNotifier(host, repairFlowOpener(host)));
  controller->applicationDidFinishLaunching();
  return host.shell.run();
}

/// True when the window of another process is open and comes to the front, on a host that is gone before that
/// of the window is made.
bool isShownByAnother() {
  const auto lifetime = makeHost(Presence::questions);
  const auto& host = lifetime->services();
  const auto other = runningRepairFlow(host.userDefaults, host.workspace);
  if (!other || !bringRepairFlowToFront(*other, host.workspace, host.log)) return false;
  host.standardStreams.writeOutput("the setup window is open already, in process " + std::to_string(*other) +
                                   "\n");
  return true;
}

int runOnboarding(OnboardingMode mode) {
  if (isShownByAnother()) return 0;
  const auto lifetime = makeHost(Presence::person);
  auto& host = lifetime->services();
  installTranslation(host.bundle, host.log);
  host.shell.setActivationPolicy(ActivationPolicy::regular);
  host.shell.setMainMenu(mainMenuForEditing());
  const auto controller =
      std::make_shared<OnboardingFlowController>(mode,
                                                 OnboardingFlowController::Services{
                                                     .mainQueue = host.mainQueue,
                                                     .backgroundQueue = host.backgroundQueue,
                                                     .statusQueue = host.statusQueue,
                                                     .childProcesses = host.childProcesses,
                                                     .bundle = host.bundle,
                                                     .log = host.log,
                                                     .userDefaults = host.userDefaults,
                                                     .networkPreferences = host.networkPreferences,
                                                     .notifications = host.userNotifications,
                                                     .workspace = host.workspace,
                                                     .window = host.onboardingWindow,
                                                     .shell = host.shell,
                                                 },
                                                 OnboardingFlowController::Collaborators{
                                                     .helper = helperRunner(host),
                                                     .socket = controlSocket(host),
                                                     .trust = deviceCATrust(host),
                                                     .configurations = networkConfigurations(host),
                                                     .menuBarAgent = menuBarAgent(host),
                                                 });
  controller->show();
  return host.shell.run();
}

int runController(Controller::Command command) {
  const auto lifetime = makeHost(Presence::commandLine);
  auto& host = lifetime->services();
  const auto controller =
      std::make_shared<Controller>(command,
                                   Controller::Services{
                                       .mainQueue = host.mainQueue,
                                       .backgroundQueue = host.backgroundQueue,
                                       .systemExtensions = host.systemExtensions,
                                       .files = host.files,
                                       .bundle = host.bundle,
                                       .streams = host.standardStreams,
                                       .shell = host.shell,
                                   },
                                   helperRunner(host), networkConfigurations(host), menuBarAgent(host));
  controller->run();
  return host.shell.run();
}

int run(const std::string& command, bool extensionOnly) {
  const auto role = roleOf(command);
  if (role == Role::relaunch) return runRelaunch();
  if (role == Role::menuBar) return runMenuBar();
  if (role == Role::onboarding) return runOnboarding(OnboardingMode::onboard);
  if (role == Role::repair) return runOnboarding(OnboardingMode::repair);
  if (const auto action = Controller::actionOf(command)) return runController({*action, extensionOnly});
  return fail(2, std::string(usageLine));
}

/// Asks what the person needs, on a host that is gone before that of the command is made.
std::string commandForThisMac() {
  const auto lifetime = makeHost(Presence::questions);
  const auto& host = lifetime->services();
  const auto daemon = controlSocket(host);
  return defaultCommand({.isTrustPending = [&daemon] { return daemon.queryTrustPending(); },
                         .isEnrolled = [&daemon] { return daemon.queryEnrolled(); },
                         .hasMenuBarAgent = [&host] { return menuBarAgent(host).isInstalled(); }});
}

int run(const CommandLine& line) {
  return run(line.command ? *line.command : commandForThisMac(), line.extensionOnly);
}

}  // namespace

}  // namespace ostrel

int main(int count, char** arguments) {
  const std::span<const char* const> all(arguments, static_cast<std::size_t>(count));
  return ostrel::run(ostrel::CommandLine::parse(all.subspan(all.empty() ? 0 : 1)));
}
