#include "Shells/Console/ConsoleAgentWindow.hpp"

#include <gtest/gtest.h>

#include <utility>

#include "OstrelAgent/Containers/ContainerDetector.hpp"
#include "Tests/Fakes/FakeStandardStreams.hpp"

namespace ostrel {
namespace {

using Texts = std::vector<std::string>;

AgentWindowContent contentOf(AgentPage page, AgentWindowContent::Body body) {
  AgentWindowContent content;
  content.page = page;
  content.title = nameOf(page);
  content.body = std::move(body);
  return content;
}

AgentWindowContent helpPage(std::string lede = "Lede") {
  AgentWindowContent::Help help{.lede = std::move(lede), .buttons = {}, .notices = {}};
  help.buttons = {PanelButton::of(PanelAction::copyDiagnostics),
                  PanelButton::of(PanelAction::sendDiagnostics)};
  help.buttons[0].isEnabled = false;
  return contentOf(AgentPage::help, help);
}

AgentWindowContent notificationsPage() {
  AgentWindowContent::Notifications page;
  page.authorization = "Off";
  page.authorizationButton = PageButton::of(PageAction::allowNotifications);
  page.master = {"All", true};
  page.runtimes = {{"Docker", true}, {"Colima", false}};
  return contentOf(AgentPage::notifications, page);
}

AgentWindowContent containersPage() {
  ContainersPage page;
  page.hasReading = true;
  page.reading =
      containerTrustReading(std::nullopt, {.running = {}, .installation = ContainerInstallation()});
  page.selected = "Colima";
  page.notificationAuthorization = NotificationAuthorization::denied;
  return contentOf(AgentPage::containers, page.content());
}

/// A console whose menu opens the window with what the test wants.
struct ConsoleAgentWindowTest : testing::Test {
  ConsoleAgentWindowTest() {
    statusItem.install({.clicked = {}, .appearanceChanged = {}, .menuPressed = [this](const auto& button) {
                          pressed.push_back(button);
                          window.open(next, {});
                        }});
    window.onEvents({
        .pageChosen = {},
        .pressed = [this](const auto& button) { done.emplace_back(nameOf(button.action)); },
        .pageActionPressed = [this](auto action) { done.push_back(PageButton::of(action).title); },
        .runtimeSelected = [this](const auto& name) { done.push_back("select " + name); },
        .snippetChosen = {},
        .copyPressed =
            [this](auto what) { return done.push_back("copy " + std::to_string(int(what))), true; },
        .notifySwitched = [this](const auto& name,
                                 bool isOn) { return done.push_back(name + (isOn ? " on" : " off")), true; },
        .allNotifySwitched =
            [this](bool isOn) { return done.emplace_back(isOn ? "all on" : "all off"), true; },
        .activated = {},
        .resized = {},
        .closed = [this] { ++closings; },
    });
  }

  std::string printed() { return std::exchange(streams.output, {}); }

  /// Presses the first buttons; returns what that did.
  Texts pressUpTo(std::size_t last) {
    done.clear();
    for (std::size_t number = 1; number <= last; ++number) {
      EXPECT_EQ(window.press(number), ConsolePress::done) << number;
    }
    EXPECT_EQ(window.press(last + 1), ConsolePress::noSuchButton);
    return done;
  }

  FakeStandardStreams streams;
  ConsoleStatusItem statusItem{streams};
  ConsoleAgentWindow window{streams, statusItem};
  AgentWindowContent next = helpPage();
  std::vector<PanelButton> pressed;
  Texts done;
  int closings = 0;
};

TEST_F(ConsoleAgentWindowTest, OpensThePageOfAName) {
  for (const auto* name : {"", "EGRESSlock", "panel"}) window.openPage(name);
  ASSERT_EQ(pressed.size(), 2U);
  EXPECT_EQ(pressed[0].page, std::nullopt);
  EXPECT_EQ(pressed[1].page, AgentPage::egressLock);
  EXPECT_TRUE(
      printed().ends_with("there is no page \"panel\"; window takes ecosystems, containers, egressLock, "
                          "identity, health, notifications or help\n"));
}

TEST_F(ConsoleAgentWindowTest, PrintsWhenItOpensAndWhenItsTextChangesUntilItCloses) {
  EXPECT_EQ(window.press(1), ConsolePress::nothingOpen);
  window.openPage("");
  EXPECT_TRUE(printed().contains("Lede"));
  auto content = helpPage();
  content.sidebar.header.symbol = "unseen";
  window.update(content);
  EXPECT_EQ(printed(), "");
  window.update(helpPage("Other"));
  EXPECT_TRUE(printed().contains("Other"));
  window.openPage("");
  EXPECT_TRUE(printed().contains("Lede")) << "asked for again";
  window.close();
  window.close();
  EXPECT_EQ(closings, 1);
  EXPECT_EQ(window.press(1), ConsolePress::nothingOpen);
}

TEST_F(ConsoleAgentWindowTest, PressesWhatTheTextNumbers) {
  window.openPage("");
  EXPECT_TRUE(printed().contains("[1] Copy diagnostics   [2] Send to admin"));
  EXPECT_EQ(window.press(0), ConsolePress::noSuchButton);
  EXPECT_EQ(window.press(1), ConsolePress::disabled);
  EXPECT_EQ(window.press(2), ConsolePress::done);
  EXPECT_EQ(done, Texts{"sendDiagnostics"});

  next = notificationsPage();
  window.openPage("");
  const auto notifications = printed();
  EXPECT_TRUE(notifications.contains("  [1] Allow notifications")) << notifications;
  EXPECT_TRUE(notifications.contains("  [2] [x] All\n")) << notifications;
  EXPECT_TRUE(notifications.contains("  [4] [ ] Colima\n")) << notifications;
  EXPECT_EQ(pressUpTo(4), (Texts{PageButton::of(PageAction::allowNotifications).title, "all off",
                                 "Docker off", "Colima on"}));

  next = containersPage();
  window.openPage("");
  EXPECT_TRUE(printed().contains("  [1] Copy setup command\n"));
  EXPECT_EQ(pressUpTo(6),
            (Texts{"copy 0", PageButton::of(PageAction::revealBundle).title, "copy 2", "Colima on",
                   PageButton::of(PageAction::openNotificationSettings).title, "copy 3"}));
}

TEST_F(ConsoleAgentWindowTest, AfterTheContainersAloneAnotherPageIsPrintedAsUsual) {
  next = containersPage();
  window.openContainers("colima");
  EXPECT_EQ(done.back(), "select Colima");
  EXPECT_TRUE(printed().starts_with("\nColima\n"));
  EXPECT_EQ(window.press(1), ConsolePress::noSuchButton) << "words are typed instead";
  window.update(helpPage());
  EXPECT_TRUE(printed().contains("[2] Send to admin"));
}

}  // namespace
}  // namespace ostrel
