#pragma once

#include <memory>

#include "OstrelAgent/MenuBar/MenuBarController.hpp"
#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {

/// The menu-bar role on a host of fakes, or with another item or clock in the place of the fake one.
inline std::shared_ptr<MenuBarController> menuBarOn(FakeHost& host, StatusItem& statusItem, Clock& clock) {
  const HelperRunner helper(host.bundle, host.files, host.childProcesses, host.standardStreams);
  const ControlSocket daemon(host.unixSockets, host.files);
  const Records records(host.files, host.clock, host.userAccount);
  return std::make_shared<MenuBarController>(
      MenuBarController::Services{
          .mainQueue = host.mainQueue,
          .backgroundQueue = host.backgroundQueue,
          .statusQueue = host.statusQueue,
          .clock = clock,
          .childProcesses = host.childProcesses,
          .networkPreferences = host.networkPreferences,
          .timeFormat = host.timeFormat,
          .shell = host.shell,
          .statusItem = statusItem,
          .screens = host.screens,
          .bundle = host.bundle,
          .log = host.log,
          .pasteboard = host.pasteboard,
          .alerts = host.alerts,
          .networkPath = host.networkPath,
          .systemWake = host.systemWake,
      },
      MenuBarController::Collaborators{
          .helper = helper,
          .socket = daemon,
          .trust = DeviceCATrust(daemon, host.files, host.childProcesses, host.userAccount),
          .configurations = NetworkConfigurations(host.networkPreferences, host.mainQueue, host.log, records),
          .records = records,
          .containerTrust = ContainerTrustPreferences(host.userDefaults),
          .openRepairFlow = {},
      },
      std::make_shared<RedNotifier>(
          RedNotifier::Services{host.userNotifications, host.userDefaults, host.log}, [] {}));
}

inline std::shared_ptr<MenuBarController> menuBarOn(FakeHost& host, StatusItem& statusItem) {
  return menuBarOn(host, statusItem, host.clock);
}

}  // namespace ostrel
