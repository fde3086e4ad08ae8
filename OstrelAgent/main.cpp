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
#include "OstrelAgent/MenuBar/PanelActionRunner.hpp"
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

std::shared_ptr<RedNotifier> redNotifier(const Host& host, const ShellServices& shell,
                                         std::function<void()> openRepairFlow) {
  return std::make_shared<RedNotifier>(
      RedNotifier::Services{
          .notifications = shell.userNotifications, .userDefaults = host.userDefaults, .log = host.log},
      std::move(openRepairFlow));
}

std::shared_ptr<StatusRefresher> statusRefresher(const Host& host, const ShellServices& shell,
                                                 NetworkLoads loads) {
  return std::make_shared<StatusRefresher>(
      StatusRefresher::Services{host.mainQueue, host.statusQueue, host.childProcesses,
                                host.networkPreferences, shell.systemWake},
      helperRunner(host), loads);
}

/// Runs the controller until the shell terminates; the controller is destroyed before the host shuts down.
template <class Controller>
int serve(HostLifetime& lifetime, const ShellServices& shell, std::shared_ptr<Controller> controller) {
  const int status = shell.shell.run();
  controller = nullptr;
  lifetime.shutDown(status);
  return status;
}

/// The long-lived objects of the menu-bar role.
struct MenuBarRole {
  std::shared_ptr<PanelActionRunner> runner;
  std::shared_ptr<MenuBarController> controller;
};

std::shared_ptr<ContainersPageController> containersPage(
    const Host& host, const ShellServices& shell,
    const std::shared_ptr<ContainerTrustPreferences>& preferences) {
  return std::make_shared<ContainersPageController>(
      ContainersPageController::Services{
          .pasteboard = shell.pasteboard,
          .notifications = shell.userNotifications,
          .mainQueue = host.mainQueue,
          .log = host.log,
      },
      ContainersPageController::Collaborators{
          .reader = std::make_shared<ContainerReader>(
              ContainerReader::Services{host.mainQueue, host.backgroundQueue},
              ContainerDetector::Services{host.workspace, host.runningProcesses, host.files,
                                          host.userAccount}),
          .preferences = preferences,
      });
}

std::shared_ptr<AgentWindowController> agentWindow(
    const Host& host, const ShellServices& shell, const std::shared_ptr<PanelPresenter>& presenter,
    const std::shared_ptr<ContainersPageController>& containers) {
  return std::make_shared<AgentWindowController>(
      AgentWindowController::Services{
          .mainQueue = host.mainQueue,
          .clock = host.clock,
          .userDefaults = host.userDefaults,
          .log = host.log,
          .workspace = host.workspace,
          .shell = shell.shell,
          .window = shell.agentWindow,
          .fileManager = shell.fileManager,
          .notifications = shell.userNotifications,
      },
      AgentWindowController::Collaborators{.presenter = presenter, .containers = containers});
}

std::shared_ptr<MenuBarRole> menuBarRole(const Host& host, const ShellServices& shell) {
  const auto presenter = std::make_shared<PanelPresenter>(
      PanelPresenter::Services{host.clock, host.timeFormat, shell.shell, shell.screens});
  const auto refresher = statusRefresher(host, shell, NetworkLoads::all);
  const auto runner = std::make_shared<PanelActionRunner>(
      PanelActionRunner::Services{
          .mainQueue = host.mainQueue,
          .backgroundQueue = host.backgroundQueue,
          .clock = host.clock,
          .bundle = host.bundle,
          .log = host.log,
          .shell = shell.shell,
          .pasteboard = shell.pasteboard,
          .alerts = shell.alerts,
      },
      PanelActionRunner::Collaborators{
          .presenter = presenter,
          .refresh = [refresher] { refresher->request(); },
          .helper = helperRunner(host),
          .socket = controlSocket(host),
          .trust = deviceCATrust(host),
          .configurations = networkConfigurations(host),
      });
  const auto nudges = std::make_shared<CheckInNudges>(
      CheckInNudges::Services{host.mainQueue, host.clock, host.networkPath, shell.systemWake},
      [weak = std::weak_ptr(runner)](const std::string& reason) {
        if (const auto actions = weak.lock()) actions->checkNow(reason);
      });
  const auto openRepairFlow = repairFlowOpener(host);
  const auto preferences = std::make_shared<ContainerTrustPreferences>(host.userDefaults);
  const auto containers = containersPage(host, shell, preferences);
  auto panelActions = runner->callbacks();
  panelActions.openRepairFlow = openRepairFlow;
  const auto controller = std::make_shared<MenuBarController>(
      MenuBarController::Services{
          .mainQueue = host.mainQueue,
          .backgroundQueue = host.backgroundQueue,
          .clock = host.clock,
          .childProcesses = host.childProcesses,
          .statusItem = shell.statusItem,
      },
      MenuBarController::Collaborators{
          .presenter = presenter,
          .refresher = refresher,
          .redNotifier = redNotifier(host, shell, openRepairFlow),
          .nudges = nudges,
          .panelActions = panelActions,
          .reactivation = {{host.backgroundQueue, host.childProcesses, host.bundle}, records(host)},
          .records = records(host),
          .containerTrust = preferences,
          .containers = containers,
          .window = agentWindow(host, shell, presenter, containers),
      });
  return std::make_shared<MenuBarRole>(runner, controller);
}

int runMenuBar(HostLifetime& lifetime) {
  const auto& host = lifetime.services();
  const auto claim = claimMenuBar(host.menuBarInstance, host.standardStreams, host.log);
  if (!claim) return 0;
  const auto& shell = lifetime.openShell(ShellMode::interactive);
  installTranslation(host.bundle, host.log);
  shell.shell.setActivationPolicy(ActivationPolicy::accessory);
  auto role = menuBarRole(host, shell);
  role->controller->start();
  return serve(lifetime, shell, std::move(role));
}

int runRelaunch(HostLifetime& lifetime) {
  const auto& host = lifetime.services();
  const auto& shell = lifetime.openShell(ShellMode::hidden);
  installTranslation(host.bundle, host.log);
  shell.shell.setActivationPolicy(ActivationPolicy::accessory);
  auto controller = std::make_shared<RelaunchController>(host.mainQueue, host.backgroundQueue, shell.shell,
                                                         menuBarAgent(host),
                                                         redNotifier(host, shell, repairFlowOpener(host)));
  controller->applicationDidFinishLaunching();
  return serve(lifetime, shell, std::move(controller));
}

/// True when another process has the window open and was brought to the front.
bool isShownByAnother(const Host& host) {
  const auto other = runningRepairFlow(host.userDefaults, host.workspace);
  if (!other || !bringRepairFlowToFront(*other, host.workspace, host.log)) return false;
  host.standardStreams.writeOutput("the setup window is open already, in process " + std::to_string(*other) +
                                   "\n");
  return true;
}

int runOnboarding(HostLifetime& lifetime, OnboardingMode mode) {
  const auto& host = lifetime.services();
  if (isShownByAnother(host)) return 0;
  const auto& shell = lifetime.openShell(ShellMode::interactive);
  installTranslation(host.bundle, host.log);
  shell.shell.setActivationPolicy(ActivationPolicy::regular);
  shell.shell.setMainMenu(mainMenuForEditing());
  auto controller = std::make_shared<OnboardingFlowController>(
      mode,
      OnboardingFlowController::Services{
          .mainQueue = host.mainQueue,
          .backgroundQueue = host.backgroundQueue,
          .childProcesses = host.childProcesses,
          .bundle = host.bundle,
          .log = host.log,
          .userDefaults = host.userDefaults,
          .notifications = shell.userNotifications,
          .workspace = host.workspace,
          .window = shell.onboardingWindow,
          .shell = shell.shell,
      },
      OnboardingFlowController::Collaborators{
          .refresher = statusRefresher(host, shell, NetworkLoads::transparentProxies),
          .socket = controlSocket(host),
          .trust = deviceCATrust(host),
          .configurations = networkConfigurations(host),
          .menuBarAgent = menuBarAgent(host),
      });
  controller->show();
  return serve(lifetime, shell, std::move(controller));
}

int runController(HostLifetime& lifetime, Controller::Command command) {
  const auto& host = lifetime.services();
  const auto& shell = lifetime.openShell(ShellMode::queueOnly);
  auto controller =
      std::make_shared<Controller>(command,
                                   Controller::Services{
                                       .mainQueue = host.mainQueue,
                                       .backgroundQueue = host.backgroundQueue,
                                       .systemExtensions = host.systemExtensions,
                                       .files = host.files,
                                       .bundle = host.bundle,
                                       .streams = host.standardStreams,
                                       .shell = shell.shell,
                                   },
                                   helperRunner(host), networkConfigurations(host), menuBarAgent(host));
  controller->run();
  return serve(lifetime, shell, std::move(controller));
}

/// The command for the state of this Mac. Blocks on the daemon, while a signal still ends the process.
std::string commandForThisMac(const Host& host) {
  const auto daemon = controlSocket(host);
  return defaultCommand({.isTrustPending = [&daemon] { return daemon.queryTrustPending(); },
                         .isEnrolled = [&daemon] { return daemon.queryEnrolled(); },
                         .hasMenuBarAgent = [&host] { return menuBarAgent(host).isInstalled(); }});
}

int run(const CommandLine& line) {
  const auto lifetime = makeHost();
  const auto command = line.command ? *line.command : commandForThisMac(lifetime->services());
  const auto role = roleOf(command);
  if (role == Role::relaunch) return runRelaunch(*lifetime);
  if (role == Role::menuBar) return runMenuBar(*lifetime);
  if (role == Role::onboarding) return runOnboarding(*lifetime, OnboardingMode::onboard);
  if (role == Role::repair) return runOnboarding(*lifetime, OnboardingMode::repair);
  if (const auto action = Controller::actionOf(command))
    return runController(*lifetime, {*action, line.extensionOnly});
  std::fputs(std::string(usageLine).c_str(), stderr);
  return 2;
}

}  // namespace

}  // namespace ostrel

int main(int count, char** arguments) {
  const std::span<const char* const> all(arguments, static_cast<std::size_t>(count));
  return ostrel::run(ostrel::CommandLine::parse(all.subspan(all.empty() ? 0 : 1)));
}
