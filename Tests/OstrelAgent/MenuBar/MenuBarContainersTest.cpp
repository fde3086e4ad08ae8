#include <gtest/gtest.h>

#include "Tests/Fakes/FakeMenuBar.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

/// The menu-bar role on a host of fakes.
struct MenuBarContainersTest : testing::Test {
  MenuBarContainersTest() {
    host.files.putExecutable(host.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
    report(reportText());
  }

  void report(std::string text) {
    host.childProcesses.answer = [text = std::move(text)](const ChildCommand&) {
      return ChildResult{0, text};
    };
  }

  void runStatus() {
    host.statusQueue.runAll();
    host.mainQueue.runAll();
  }
  void runBackground() {
    host.backgroundQueue.runAll();
    host.mainQueue.runAll();
  }
  /// The next refresh, with all of its work.
  void refresh() {
    host.mainQueue.advance(5s);
    runStatus();
    runBackground();
  }

  void openContainers() { host.statusItem.press(PanelButton::opening(AgentPage::containers)); }

  const std::string& row() const { return host.screens.panels.back().protection->containers.state.text; }

  Texts posted() {
    Texts titles;
    for (const auto& each : std::exchange(host.userNotifications.posted, {})) titles.push_back(each.title);
    return titles;
  }

  /// The runtimes in the first section of the page.
  Texts blocked() const {
    Texts names;
    for (const auto& each : host.agentWindow.containers().sections.at(0).rows) names.push_back(each.name);
    return names;
  }

  FakeHost host;
  std::shared_ptr<MenuBarController> controller = menuBarOn(host, host.statusItem);
};

TEST_F(MenuBarContainersTest, RunningRuntimesReachThePanelSortedAtEachRefreshThoughTheHelperHangs) {
  host.workspace.applications = {{.bundleIdentifier = "com.docker.docker", .launchDate = {}}};
  host.runningProcesses.processes = {"colima"};
  controller->start();
  controller->togglePanel();
  runStatus();
  EXPECT_EQ(row(), "none running") << "not read yet";
  runBackground();
  EXPECT_EQ(row(), "Colima and Docker running");
  host.runningProcesses.processes = {};
  refresh();
  EXPECT_EQ(row(), "Docker running");
  host.mainQueue.advance(5s);  // this refresh hangs, the next one reads without it
  host.runningProcesses.processes = {"vfkit", "colima"};
  host.mainQueue.advance(5s);
  runBackground();
  EXPECT_EQ(row(), "Colima, Docker and vfkit running");
  EXPECT_GT(host.statusQueue.countWaiting(), 0U) << "the helper has not answered";
}

TEST_F(MenuBarContainersTest, AReadingThatHangsDelaysNoStatusAndIsTheOnlyOne) {
  const auto shown = [this] { return host.statusItem.shown.back().text; };
  host.runningProcesses.processes = {"colima"};
  controller->start();
  runStatus();
  EXPECT_EQ(shown(), "Ostrel Agent: protected");
  controller->togglePanel();
  openContainers();
  const auto waiting = host.backgroundQueue.countWaiting();
  report(blockedReportText("not_protected"));
  for (int tick = 0; tick < 12; ++tick) {
    host.mainQueue.advance(5s);
    runStatus();
  }
  EXPECT_EQ(shown(), "Ostrel Agent: not protected");
  EXPECT_EQ(host.agentWindow.containers().checking, "checking…");
  EXPECT_LE(host.backgroundQueue.countWaiting(), waiting + 1) << "a record at most";
  runBackground();
  EXPECT_EQ(blocked(), Texts({"Colima", "Podman"}));
}

TEST_F(MenuBarContainersTest, BlockedRuntimesThatTheUserChoseAreReportedOnceADayInTheReportsOrder) {
  const Texts both = {"A container in Podman was blocked", "A container in Colima was blocked"};
  const auto start = host.clock.now();
  controller->start();
  openContainers();
  report(blockedReportText());
  refresh();
  EXPECT_EQ(posted(), Texts()) << "the user wants none";
  for (const auto* runtime : {"Colima", "Podman", "Docker"}) {
    EXPECT_TRUE(host.agentWindow.user.notifySwitched(runtime, true));
  }
  refresh();
  EXPECT_EQ(posted(), both);
  EXPECT_EQ(blocked(), Texts({"Colima", "Podman"}));
  report(reportText());
  refresh();
  EXPECT_EQ(blocked(), Texts()) << "the block has ended";
  report(blockedReportText());
  host.clock.set(start + 23h);
  refresh();
  EXPECT_EQ(blocked(), Texts({"Colima", "Podman"}));
  EXPECT_EQ(posted(), Texts());
  EXPECT_TRUE(host.agentWindow.user.notifySwitched("Podman", false));
  host.clock.set(start + 24h + 1min);
  refresh();
  refresh();
  EXPECT_EQ(posted(), Texts({both[1]}));
}

}  // namespace
}  // namespace ostrel
