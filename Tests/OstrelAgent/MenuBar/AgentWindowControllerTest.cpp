#include "OstrelAgent/MenuBar/AgentWindowController.hpp"

#include <gtest/gtest.h>

#include "OstrelAgent/Containers/TrustBundle.hpp"
#include "OstrelAgent/Text/EditMenu.hpp"
#include "Tests/Fakes/FakeMenuBar.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using enum NotificationAuthorization;
using Notifications = AgentWindowContent::Notifications;

/// The window within the menu-bar role, on a host of fakes.
struct AgentWindowControllerTest : testing::Test {
  AgentWindowControllerTest() {
    host.files.putExecutable(host.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
    host.shell.policy = ActivationPolicy::accessory;
    answer({0, reportText()});
    controller->start();
  }

  void answer(ChildResult result) {
    host.childProcesses.answer = [=](const ChildCommand&) { return result; };
  }

  void settle() {
    do {
      host.statusQueue.runAll();
      host.backgroundQueue.runAll();
      host.mainQueue.runAll();
    } while (host.statusQueue.countWaiting() + host.backgroundQueue.countWaiting() > 0);
  }

  void refresh() {
    host.mainQueue.advance(5s);
    settle();
  }

  /// As an entry of the status item's menu.
  void open(std::optional<AgentPage> page = std::nullopt) {
    host.statusItem.press(page ? PanelButton::opening(*page) : PanelButton::of(PanelAction::openAgentWindow));
  }

  void clickContainerNotification() {
    host.userNotifications.respond(
        {NotificationResponse::Case::action, "tech.brenn.ostrel-agent.container-blocked", "CONTAINER_TRUST"});
  }

  void press(PanelAction action) { window.user.pressed(PanelButton::of(action)); }

  FakeHost host;
  FakeAgentWindow& window = host.agentWindow;
  std::shared_ptr<MenuBarController> controller = menuBarOn(host, host.statusItem);
};

TEST_F(AgentWindowControllerTest, WhileItIsOpenTheProgramIsARegularOneWithAnEditMenu) {
  controller->togglePanel();
  host.screens.press(host.screens.panels.back().footerButtons.at(0));
  EXPECT_TRUE(window.isOpen);
  EXPECT_FALSE(host.screens.isShown) << "the window opens in place of the panel";
  EXPECT_EQ(host.shell.policy, ActivationPolicy::regular);
  EXPECT_EQ(host.shell.menuBar, mainMenuForEditing());
  EXPECT_EQ(host.shell.activations, 2);
  window.close();
  EXPECT_EQ(host.shell.policy, ActivationPolicy::accessory);
  EXPECT_TRUE(host.shell.menuBar.empty());
  const auto drawn = window.contents.size();
  refresh();
  EXPECT_EQ(window.contents.size(), drawn) << "a closed window is not drawn";
}

TEST_F(AgentWindowControllerTest, FollowsTheStatusFromBeforeTheFirstReportOverAFailingHelper) {
  open(AgentPage::health);
  EXPECT_EQ(window.shown().statusError->text, "checking…");
  settle();
  EXPECT_TRUE(std::holds_alternative<AgentWindowContent::Health>(window.shown().body));
  answer({3, ""});
  refresh();
  EXPECT_EQ(window.shown().statusError->text, "agent status unavailable (exit 3)");
  answer({0, reportText()});
  refresh();
  EXPECT_EQ(window.shown().statusError, std::nullopt);
  const auto drawn = window.contents.size();
  host.mainQueue.advance(5s);
  EXPECT_GT(window.contents.size(), drawn) << "times go on while the helper hangs";
}

TEST_F(AgentWindowControllerTest, OpenedByClickMenuAndNotificationAtOnceItIsOneWithTheLastPage) {
  controller->togglePanel();
  host.screens.press(PanelButton::opening(AgentPage::identity));
  open(AgentPage::help);
  clickContainerNotification();
  EXPECT_EQ(window.shown().page, AgentPage::containers);
  window.close();
  EXPECT_EQ(host.shell.policy, ActivationPolicy::accessory) << "one closing ends it";
  open();
  EXPECT_EQ(window.shown().page, AgentPage::containers);
}

TEST_F(AgentWindowControllerTest, RemembersPageAndSizeOverARestart) {
  open();
  EXPECT_EQ(window.shown().page, AgentPage::ecosystems);
  window.user.pageChosen(AgentPage::help);
  EXPECT_EQ(window.shown().page, AgentPage::help);
  EXPECT_EQ(host.userDefaults.get<std::string>("AgentWindowPage"), std::nullopt);
  host.mainQueue.advance(1s);
  EXPECT_EQ(host.userDefaults.get<std::string>("AgentWindowPage"), "help");
  const auto stored = [this] { return host.userDefaults.get<std::vector<double>>("AgentWindowSize"); };
  for (const double width : {800, 810, 820}) {
    window.user.resized({width, 100});
    host.mainQueue.advance(999ms);
    EXPECT_EQ(stored(), std::nullopt);
  }
  window.close();
  EXPECT_EQ(stored(), (std::vector<double>{820, 360}));
  controller = menuBarOn(host, host.statusItem);
  controller->start();
  open();
  EXPECT_EQ(window.shown().page, AgentPage::help);
  EXPECT_EQ(window.sizes.back(), (WindowSize{820, 360}));
}

TEST_F(AgentWindowControllerTest, AViewThatCannotOpenLeavesAllAsItWas) {
  window.canOpen = false;
  open(AgentPage::containers);
  EXPECT_EQ(host.shell.policy, ActivationPolicy::accessory);
  EXPECT_TRUE(host.shell.menuBar.empty());
  refresh();
  EXPECT_EQ(window.contents.size(), 1U);
  window.canOpen = true;
  open();
  refresh();
  EXPECT_EQ(window.containers().sections.size(), 3U);
}

TEST_F(AgentWindowControllerTest, ReadsContainersAndThePermissionForThePagesThatShowThem) {
  const auto docker = [this] { return window.body<Notifications>().runtimes.size(); };
  host.userNotifications.authorization = denied;
  host.workspace.installed = {"com.docker.docker"};
  open();
  settle();
  window.user.pageChosen(AgentPage::notifications);
  EXPECT_EQ(window.body<Notifications>().authorization, "") << "not known yet";
  settle();
  EXPECT_EQ(docker(), 1U);
  EXPECT_EQ(window.body<Notifications>().authorizationButton->action, PageAction::openNotificationSettings);
  host.userNotifications.authorization = authorized;
  window.user.activated();
  settle();
  EXPECT_EQ(window.body<Notifications>().authorizationButton, std::nullopt) << "changed in the settings";
  window.user.pageChosen(AgentPage::help);
  const auto drawn = window.contents.size();
  host.userNotifications.authorization = denied;
  window.user.activated();
  settle();
  EXPECT_EQ(window.contents.size(), drawn) << "this page shows neither";
}

TEST_F(AgentWindowControllerTest, AsksForThePermissionByItsButtonAndByASwitch) {
  const auto button = [this] { return window.body<Notifications>().authorizationButton; };
  const auto allow = PageButton::of(PageAction::allowNotifications);
  open(AgentPage::notifications);
  settle();
  EXPECT_EQ(button(), allow);
  host.userNotifications.decision = authorized;
  window.user.pageActionPressed(PageAction::allowNotifications);
  settle();
  EXPECT_EQ(button(), std::nullopt);
  host.userNotifications.authorization = notDetermined;
  refresh();
  EXPECT_EQ(button(), allow);
  host.userNotifications.decision = denied;
  EXPECT_TRUE(window.user.notifySwitched("Docker", true));
  settle();
  EXPECT_EQ(button(), PageButton::of(PageAction::openNotificationSettings));
  EXPECT_TRUE(window.user.notifySwitched("Podman", true)) << "also while denied";
  settle();
  EXPECT_EQ(host.userNotifications.requests, 2);
  EXPECT_TRUE(window.body<Notifications>().master.isOn);
  EXPECT_TRUE(window.user.allNotifySwitched(false));
  EXPECT_FALSE(window.body<Notifications>().master.isOn);
}

TEST_F(AgentWindowControllerTest, OpensTheNotificationSettings) {
  open(AgentPage::notifications);
  window.user.pageActionPressed(PageAction::openNotificationSettings);
  EXPECT_EQ(host.workspace.urls,
            std::vector<std::string>{"x-apple.systempreferences:com.apple.Notifications-Settings.extension"});
  EXPECT_TRUE(host.log.lines.empty());
  host.workspace.canOpenUrls = false;
  window.user.pageActionPressed(PageAction::openNotificationSettings);
  EXPECT_EQ(host.log.lines, std::vector<std::string>{"ostrel: could not open the notification settings"});
}

TEST_F(AgentWindowControllerTest, CopiesThePathOfABundleThatNoFileManagerShows) {
  const std::string path(trustbundle::file);
  open(AgentPage::containers);
  settle();
  window.user.runtimeSelected("Docker");
  for (const bool isShown : {true, false}) {
    window.user.pageActionPressed(PageAction::revealBundle);
    EXPECT_EQ(host.fileManager.revealed.back(), path);
    host.fileManager.answer(isShown);
    EXPECT_EQ(host.pasteboard.content, isShown ? std::nullopt : std::optional(path));
    EXPECT_EQ(window.containers().detail->copyPath.copied, isShown ? "" : "Copied");
  }
  window.user.pageActionPressed(PageAction::revealBundle);
  host.pasteboard.content.reset();
  controller.reset();
  host.fileManager.answer(false);
  EXPECT_EQ(host.pasteboard.content, std::nullopt);
}

TEST_F(AgentWindowControllerTest, ActionsGoOnWhenItCloses) {
  open(AgentPage::help);
  press(PanelAction::copyDiagnostics);
  EXPECT_FALSE(window.body<AgentWindowContent::Help>().buttons.at(0).isEnabled);
  press(PanelAction::installUpdate);
  host.alerts.press(0);
  window.close();
  settle();
  controller->togglePanel();
  EXPECT_FALSE(host.screens.panels.back().notices.empty()) << "of the diagnostics";
  EXPECT_EQ(host.alerts.shown.at(0).title, "Couldn't start the update") << "there is no daemon";
}

TEST_F(AgentWindowControllerTest, AWindowThatOutlivesItsControllerIsDead) {
  open(AgentPage::containers);
  window.user.resized({700, 500});
  controller.reset();
  window.user.pageChosen(AgentPage::help);
  EXPECT_FALSE(window.user.copyPressed(ContainersCopy::snippet));
  window.close();
  host.mainQueue.advance(5s);
  EXPECT_EQ(host.shell.policy, ActivationPolicy::regular);
  EXPECT_EQ(host.userDefaults.value("AgentWindowSize"), std::nullopt);
}

}  // namespace
}  // namespace ostrel
