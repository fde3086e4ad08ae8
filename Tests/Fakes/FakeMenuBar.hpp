#pragma once

#include <memory>

#include "OstrelAgent/MenuBar/MenuBarController.hpp"
#include "OstrelAgent/MenuBar/PanelActionRunner.hpp"
#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {

/// The menu-bar role on a host of fakes, or with another status item or clock instead of the fake one.
inline std::shared_ptr<MenuBarController> menuBarOn(FakeHost& host, StatusItem& statusItem, Clock& clock) {
  const HelperRunner helper(host.bundle, host.files, host.childProcesses, host.standardStreams);
  const ControlSocket daemon(host.unixSockets, host.files);
  const Records records(host.files, host.clock, host.userAccount);
  const auto presenter = std::make_shared<PanelPresenter>(
      PanelPresenter::Services{clock, host.timeFormat, host.shell, host.screens});
  const auto refresher = std::make_shared<StatusRefresher>(
      StatusRefresher::Services{host.mainQueue, host.statusQueue, host.childProcesses,
                                host.networkPreferences, host.systemWake},
      helper, NetworkLoads::all);
  const auto runner = std::make_shared<PanelActionRunner>(
      PanelActionRunner::Services{host.mainQueue, host.backgroundQueue, clock, host.bundle, host.log,
                                  host.shell, host.pasteboard, host.alerts},
      PanelActionRunner::Collaborators{
          .presenter = presenter,
          .refresh = [refresher] { refresher->request(); },
          .helper = helper,
          .socket = daemon,
          .trust = DeviceCATrust(daemon, host.files, host.childProcesses, host.userAccount),
          .configurations = NetworkConfigurations(host.networkPreferences, host.mainQueue, host.log, records),
      });
  const auto nudges = std::make_shared<CheckInNudges>(
      CheckInNudges::Services{host.mainQueue, clock, host.networkPath, host.systemWake},
      [weak = std::weak_ptr(runner)](const std::string& reason) {
        if (const auto actions = weak.lock()) actions->checkNow(reason);
      });
  const auto preferences = std::make_shared<ContainerTrustPreferences>(host.userDefaults);
  const auto containers = std::make_shared<ContainersPageController>(
      ContainersPageController::Services{host.pasteboard, host.userNotifications, host.mainQueue, host.log},
      ContainersPageController::Collaborators{
          .reader = std::make_shared<ContainerReader>(
              ContainerReader::Services{host.mainQueue, host.backgroundQueue},
              ContainerDetector::Services{host.workspace, host.runningProcesses, host.files,
                                          host.userAccount}),
          .preferences = preferences,
      });
  struct Role {
    std::shared_ptr<PanelActionRunner> runner;
    std::shared_ptr<MenuBarController> controller;
  };
  const auto role = std::make_shared<Role>();
  role->runner = runner;
  role->controller = std::make_shared<MenuBarController>(
      MenuBarController::Services{host.mainQueue, host.backgroundQueue, clock, host.childProcesses,
                                  statusItem},
      MenuBarController::Collaborators{
          .presenter = presenter,
          .refresher = refresher,
          .redNotifier = std::make_shared<RedNotifier>(
              RedNotifier::Services{host.userNotifications, host.userDefaults, host.log}, [] {}),
          .nudges = nudges,
          .panelActions = runner->callbacks(),
          .reactivation = {{host.backgroundQueue, host.childProcesses, host.bundle}, records},
          .records = records,
          .containerTrust = preferences,
          .containers = containers,
          .window = std::make_shared<AgentWindowController>(
              AgentWindowController::Services{
                  .mainQueue = host.mainQueue,
                  .clock = clock,
                  .userDefaults = host.userDefaults,
                  .log = host.log,
                  .workspace = host.workspace,
                  .shell = host.shell,
                  .window = host.agentWindow,
                  .fileManager = host.fileManager,
                  .notifications = host.userNotifications,
              },
              AgentWindowController::Collaborators{.presenter = presenter, .containers = containers}),
      });
  return {role, role->controller.get()};
}

inline std::shared_ptr<MenuBarController> menuBarOn(FakeHost& host, StatusItem& statusItem) {
  return menuBarOn(host, statusItem, host.clock);
}

}  // namespace ostrel
