#include <cstdio>
#include <memory>
#include <string>

#include "OstrelAgent/CommandLine.hpp"
#include "OstrelAgent/ControlSocket.hpp"
#include "OstrelAgent/Controller.hpp"
#include "OstrelAgent/MenuBarController.hpp"
#include "OstrelAgent/RelaunchController.hpp"
#include "OstrelAgent/Translation.hpp"
#include "Platform/Host.hpp"

namespace ostrel {

namespace {

HelperRunner helperRunner(const Host& host) {
  return {host.bundle, host.files, host.childProcesses, host.standardStreams};
}

MenuBarAgent menuBarAgent(const Host& host) {
  return {host.bundle, host.files, host.childProcesses, host.standardStreams, host.userAccount};
}

int runMenuBar() {
  const auto lifetime = makeHost(Presence::person);
  auto& host = lifetime->services();
  installTranslation(host.bundle, host.log);
  host.shell.setActivationPolicy(ActivationPolicy::accessory);
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
      },
      helperRunner(host));
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
  host.shell.setActivationPolicy(ActivationPolicy::accessory);
  const auto controller = std::make_shared<RelaunchController>(host.mainQueue, host.backgroundQueue,
                                                               host.shell, menuBarAgent(host));
  controller->applicationDidFinishLaunching();
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
                                   helperRunner(host),
                                   NetworkConfigurations(host.networkPreferences, host.mainQueue, host.log,
                                                         Records(host.files, host.clock, host.userAccount)),
                                   menuBarAgent(host));
  controller->run();
  return host.shell.run();
}

int run(const std::string& command, bool extensionOnly) {
  const auto role = roleOf(command);
  if (role == Role::relaunch) return runRelaunch();
  if (role == Role::menuBar) return runMenuBar();
  if (role) return fail(1, "OstrelAgent: this build does not have the command " + command + ".\n");
  if (const auto action = Controller::actionOf(command)) return runController({*action, extensionOnly});
  return fail(2, std::string(usageLine));
}

/// Asks what the person needs, on a host that is gone before that of the command is made.
std::string commandOfPersonsNeed() {
  const auto lifetime = makeHost(Presence::questions);
  const auto& host = lifetime->services();
  const ControlSocket daemon(host.unixSockets, host.files);
  return commandByNeed({.isTrustPending = [&daemon] { return daemon.queryTrustPending(); },
                        .isEnrolled = [&daemon] { return daemon.queryEnrolled(); },
                        .hasMenuBarAgent = [&host] { return menuBarAgent(host).isInstalled(); }});
}

int run(const CommandLine& line) {
  return run(line.command ? *line.command : commandOfPersonsNeed(), line.extensionOnly);
}

}  // namespace

}  // namespace ostrel

int main(int count, char** arguments) {
  const std::span<const char* const> all(arguments, static_cast<std::size_t>(count));
  return ostrel::run(ostrel::CommandLine::parse(all.subspan(all.empty() ? 0 : 1)));
}
