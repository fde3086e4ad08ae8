#include "OstrelAgent/Extension/RelaunchController.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

TEST(RelaunchController, RestartsTheMenuBarAgentAfterFiveSecondsAndThenEnds) {
  FakeHost host;
  host.childProcesses.script.emplace_back(ChildResult{0, ""});
  const auto controller = std::make_shared<RelaunchController>(
      host.mainQueue, host.backgroundQueue, host.shell,
      MenuBarAgent(host.bundle, host.files, host.childProcesses, host.standardStreams, host.userAccount),
      std::make_shared<RedNotifier>(
          RedNotifier::Services{host.userNotifications, host.userDefaults, host.log}, [] {}));
  controller->applicationDidFinishLaunching();
  EXPECT_EQ(host.userNotifications.categories.size(), 2U);
  host.mainQueue.advance(4999ms);
  EXPECT_EQ(host.backgroundQueue.countWaiting(), 0U);
  host.mainQueue.advance(1ms);
  EXPECT_EQ(host.shell.exitStatus, std::nullopt) << "the end comes after the restart";
  host.backgroundQueue.runAll();
  ASSERT_EQ(host.childProcesses.commands.size(), 1U);
  EXPECT_EQ(host.childProcesses.commands[0].arguments.at(0), "kickstart");
  host.mainQueue.runAll();
  EXPECT_EQ(host.shell.exitStatus, 0);
}

}  // namespace
}  // namespace ostrel
