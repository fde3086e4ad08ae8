#include <cstdio>
#include <memory>
#include <string>

#include "OstrelAgent/CommandLine.hpp"
#include "OstrelAgent/Controller.hpp"
#include "OstrelAgent/MenuBarController.hpp"
#include "OstrelAgent/RelaunchController.hpp"
#include "OstrelAgent/Translation.hpp"
#include "Platform/Host.hpp"

namespace ostrel {

namespace {

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
      HelperRunner(host.bundle, host.files, host.childProcesses, host.standardStreams));
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

int missing(const std::string& command) {
  return fail(1, "OstrelAgent: this build does not have the command " + command + ".\n");
}

int run(const CommandLine& line) {
  if (!line.command) return fail(1, "OstrelAgent: name a command; this build has menubar.\n");
  const auto role = roleOf(*line.command);
  if (role == Role::relaunch) return runRelaunch();
  if (role == Role::menuBar) return runMenuBar();
  if (role || Controller::actionOf(*line.command)) return missing(*line.command);
  return fail(2, std::string(usageLine));
}

}  // namespace

}  // namespace ostrel

int main(int count, char** arguments) {
  const std::span<const char* const> all(arguments, static_cast<std::size_t>(count));
  return ostrel::run(ostrel::CommandLine::parse(all.subspan(all.empty() ? 0 : 1)));
}
