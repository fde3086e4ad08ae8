#include <gtest/gtest.h>

#include <algorithm>

#include "OstrelAgent/Status/RFC3339.hpp"
#include "Tests/Fakes/FakeMenuBar.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

constexpr const char* unreported = "Ostrel Agent: status not reported";
constexpr const char* isProtected = "Ostrel Agent: protected";
constexpr const char* notProtected = "Ostrel Agent: not protected";

bool isProbe(const ChildCommand& command) { return command.executable == "/usr/bin/profiles"; }

bool isReactivation(const ChildCommand& command) {
  return command.arguments == std::vector<std::string>{"reactivate"} && command.outlivesProgram;
}

/// A controller on a host of fakes.
struct MenuBarControllerTest : testing::Test {
  MenuBarControllerTest() {
    host.files.putExecutable(host.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
    answer({0, reportText()});
  }

  void answer(ChildResult status, const std::string& enrolled = "No") {
    host.childProcesses.answer = [=](const ChildCommand& command) {
      return isProbe(command) ? ChildResult{0, "MDM enrollment: " + enrolled + "\n"} : status;
    };
  }

  void store(const char* key, DefaultsValue value) {
    ASSERT_TRUE(host.userDefaults.set(key, std::move(value)));
  }

  /// Runs all background work, and the work that it adds.
  void settle() {
    do {
      host.statusQueue.runAll();
      host.backgroundQueue.runAll();
      host.mainQueue.runAll();
    } while (host.statusQueue.countWaiting() + host.backgroundQueue.countWaiting() > 0);
  }

  /// Lets that time pass, with all work done at each tick.
  void pass(std::chrono::seconds time) {
    settle();
    for (auto passed = 0s; passed < time; passed += 5s) {
      host.mainQueue.advance(5s);
      settle();
    }
  }

  std::vector<std::string> icons() const {
    std::vector<std::string> texts;
    for (const auto& icon : host.statusItem.shown) texts.push_back(icon.text);
    return texts;
  }
  std::ptrdiff_t statusRuns() const {
    return std::ranges::count_if(host.childProcesses.commands,
                                 [](const auto& command) { return !isProbe(command); });
  }
  const PanelContent& panel() const { return host.screens.panels.back(); }

  FakeHost host;
  const std::string folder =
      host.userAccount.homeFolder + "/Library/Application Support/ostrel-agent-endpoint/";
  std::shared_ptr<MenuBarController> controller = menuBarOn(host, host.statusItem);
};

TEST_F(MenuBarControllerTest, ShowsAnIconBeforeAnyDataAndThenEveryChangeWithinFiveSeconds) {
  controller->start();
  EXPECT_EQ(icons(), std::vector<std::string>{unreported});
  settle();
  EXPECT_EQ(icons(), (std::vector<std::string>{unreported, isProtected}));
  host.mainQueue.advance(4999ms);
  EXPECT_EQ(host.statusQueue.countWaiting(), 0U);
  host.mainQueue.advance(1ms);
  settle();
  EXPECT_EQ(statusRuns(), 2);
  EXPECT_EQ(icons().size(), 2U);
  answer({3, reportText()});
  host.mainQueue.advance(5s);
  settle();
  EXPECT_EQ(icons().back(), unreported);
}

TEST_F(MenuBarControllerTest, DrawsTheIconForTheAppearanceOfTheMenuBar) {
  controller->start();
  settle();
  const auto glyph = [](MenuBarPalette::Case palette) {
    return MenuBarPicture(menubarpicture::Glyph{MenuBarBadge::dot, {palette}});
  };
  EXPECT_EQ(host.statusItem.shown.back().picture, glyph(MenuBarPalette::Case::light));
  host.statusItem.change(Appearance::dark);
  EXPECT_EQ(host.statusItem.shown.back().picture, glyph(MenuBarPalette::Case::dark));
  EXPECT_EQ(icons().back(), isProtected);
  const auto count = host.statusItem.shown.size();
  host.statusItem.change(Appearance::dark);
  EXPECT_EQ(host.statusItem.shown.size(), count);
  host.statusItem.hasImages = false;
  host.statusItem.change(Appearance::dark);
  EXPECT_TRUE(std::holds_alternative<menubarpicture::Title>(host.statusItem.shown.back().picture));
}

TEST_F(MenuBarControllerTest, QuitsFromTheMenuAndFromThePanel) {
  controller->start();
  ASSERT_EQ(host.statusItem.menu.size(), 3U);
  EXPECT_EQ(host.statusItem.menu[2].title, "Quit status icon");
  host.statusItem.press(host.statusItem.menu[2]);
  EXPECT_EQ(host.shell.terminations, 1);
  controller->togglePanel();
  host.screens.press(panel().moreButtons.back());
  EXPECT_EQ(host.shell.terminations, 2);
}

TEST_F(MenuBarControllerTest, NotifiesOnceAfterAMinuteWithoutProtection) {
  answer({0, reportText("not_protected")});
  controller->start();
  settle();
  for (int seconds = 5; seconds <= 600; seconds += 5) {
    host.mainQueue.advance(5s);
    settle();
    EXPECT_EQ(host.userNotifications.posted.size(), seconds < 60 ? 0U : 1U) << seconds;
  }
}

TEST_F(MenuBarControllerTest, AnOpenPanelFollowsTheTimeWhileTheHelperHangs) {
  auto settling = reportText("degraded");
  settling.insert(
      settling.find(R"("verdict")"),
      R"("daemon":{"state":"broken","severity":"yellow","self_healing":true,"expected_clear_by":")" +
          formatRFC3339(host.clock.now() + 20s) + "\"},");
  answer({0, settling});
  controller->start();
  settle();
  controller->togglePanel();
  settle();
  const auto before = panel();
  host.mainQueue.advance(5s);
  EXPECT_GT(host.screens.panels.size(), 2U) << "drawn at every tick";
  host.mainQueue.advance(20s);
  EXPECT_NE(panel().header, before.header) << "the deadline has passed";
}

TEST_F(MenuBarControllerTest, EachRefreshRecordsTheStateOfTheNetworkExtension) {
  const auto record = [this] {
    return host.files.read(folder + "egress-lock-configuration.json").value_or("");
  };
  host.clock.set(Date(1735812000000ms));
  controller->start();
  settle();
  EXPECT_EQ(record(),
            R"({"configuration_exists":false,"enabled":false,"observed_at":"2025-01-02T10:00:00Z"})");
  host.networkPreferences.contentFilter = ContentFilterConfiguration{.hasProvider = true};
  host.networkPreferences.transparentProxies = std::vector{TransparentProxyConfiguration{.enabled = true}};
  host.mainQueue.advance(5s);
  settle();
  const std::string seen =
      R"({"configuration_exists":true,"enabled":false,"mdm_enrolled":false,"observed_at":"2025-01-02T10:00:05Z",)"
      R"("transparent_proxy_approved":true,"transparent_proxy_enabled":true})";
  EXPECT_EQ(record(), seen);
  host.files.writeError = PlatformError{posixErrorDomain, ENOSPC, "full"};
  host.mainQueue.advance(5s);
  settle();
  EXPECT_EQ(record(), seen);
  EXPECT_EQ(icons().back(), isProtected) << "nothing depends on the record";
}

TEST_F(MenuBarControllerTest, ReactivatesTheExtensionOncePerVersionAndOncePerProcess) {
  const auto pending = [this](const std::string& version) {
    answer({0, R"({"reactivate_pending":true,"reactivate_version":")" + version + "\"," +
                   reportText().substr(1)});
  };
  struct Row {
    std::string recorded, wanted;
    std::int32_t ends;
    int runs;
    std::string after;
  };
  const Row rows[] = {
      {"4.12.0", "4.13.0", 0, 1, "4.13.0"},
      {"4.12.0\n", "4.12.0", 0, 0, "4.12.0\n"},
      {"4.12.0", "4.13.0", 1, 1, "4.12.0"},
      {"4.12.0", "", 0, 1, "4.12.0"},
  };
  for (const auto& row : rows) {
    controller = menuBarOn(host, host.statusItem);
    host.files.put(folder + "reactivated-version", row.recorded);
    host.childProcesses.commands.clear();
    pending(row.wanted);
    const auto helper = host.childProcesses.answer;
    host.childProcesses.answer = [&](const ChildCommand& command) {
      return isReactivation(command) ? ChildResult{row.ends, ""} : helper(command);
    };
    controller->start();
    pass(15s);
    EXPECT_EQ(std::ranges::count_if(host.childProcesses.commands, isReactivation), row.runs) << row.wanted;
    EXPECT_EQ(host.files.read(folder + "reactivated-version"), row.after) << row.wanted;
  }
  pending("4.14.0");
  host.mainQueue.advance(5s);
  settle();
  EXPECT_EQ(std::ranges::count_if(host.childProcesses.commands, isReactivation), 1)
      << "this process has reactivated once";
}

TEST_F(MenuBarControllerTest, SettingsOfOtherTypesCountAsMissing) {
  store("ContainerBlockNotifyRuntimes", std::string("Podman"));
  store("ContainerBlockNotificationLastPostedAt", true);
  store("RedNotificationLastPostedAt", std::string("yesterday"));
  answer({0, blockedReportText("not_protected")});
  controller->start();
  pass(70s);
  EXPECT_EQ(icons().back(), notProtected);
  ASSERT_EQ(host.userNotifications.posted.size(), 1U);
  EXPECT_EQ(host.userNotifications.posted[0].title, "This Mac is not protected");
}

TEST_F(MenuBarControllerTest, ContinuesWhenTheClockIsSetOrTheMacSleeps) {
  answer({0, reportText("not_protected")});
  controller->start();
  pass(70s);
  EXPECT_EQ(host.userNotifications.posted.size(), 1U);
  host.clock.set(host.clock.now() - 24h);
  pass(70s);
  EXPECT_EQ(host.userNotifications.posted.size(), 2U) << "a post in the future is no post";
  host.clock.set(host.clock.now() + 24h);
  pass(70s);
  EXPECT_EQ(host.userNotifications.posted.size(), 3U) << "a day later it is posted again";
  answer({0, reportText()});
  host.clock.set(host.clock.now() + 8h);  // a sleep, in which no timer runs
  pass(5s);
  EXPECT_EQ(icons().back(), isProtected);
}

TEST_F(MenuBarControllerTest, OnlyAnOpenPanelIsUpdated) {
  controller->start();
  host.statusItem.click();
  EXPECT_EQ(panel().statusError->text, "checking…") << "no reading has ended yet";
  settle();
  EXPECT_EQ(panel().statusError, std::nullopt);
  answer({3, ""});
  host.mainQueue.advance(5s);
  settle();
  EXPECT_EQ(panel().statusError->text, "agent status unavailable (exit 3)");
  host.statusItem.click();
  EXPECT_FALSE(host.screens.isShown);
  EXPECT_EQ(host.shell.activations, 1) << "only opening comes to the front";
  EXPECT_EQ(host.statusQueue.countWaiting(), 0U) << "closing requests no refresh";
  const auto count = host.screens.panels.size();
  answer({0, reportText()});
  host.mainQueue.advance(5s);
  settle();
  EXPECT_EQ(host.screens.panels.size(), count);
  EXPECT_EQ(icons().back(), isProtected);
}

TEST_F(MenuBarControllerTest, ThePanelIsFortyPointsLowerThanTheScreenButNeverBelowZero) {
  const std::pair<std::optional<double>, double> rows[] = {
      {std::nullopt, 0}, {875, 835}, {std::nullopt, 835}, {40, 0}, {39.5, 0}, {0, 0}, {40.5, 0.5},
  };
  controller->start();
  for (const auto& [height, most] : rows) {
    host.screens.height = height;
    controller->togglePanel();
    EXPECT_EQ(panel().maxHeight, most) << height.value_or(-1);
    controller->togglePanel();
  }
}

TEST_F(MenuBarControllerTest, DeviceManagementIsProbedOnceAndJoinsTheNextSnapshot) {
  const auto lock = [this] { return panel().protection->egressLock.state.text; };
  answer({0, reportText()}, "Yes (User Approved)");
  controller->start();
  controller->togglePanel();
  host.statusQueue.runAll();
  host.mainQueue.runAll();
  EXPECT_EQ(lock(), "approval needed");
  host.backgroundQueue.runAll();
  host.mainQueue.runAll();
  EXPECT_EQ(lock(), "approval needed");
  for (int tick = 0; tick < 3; ++tick) {
    host.mainQueue.advance(5s);
    settle();
    EXPECT_EQ(lock(), "via your organization's profile");
  }
  EXPECT_EQ(std::ranges::count_if(host.childProcesses.commands, isProbe), 1);
}

TEST_F(MenuBarControllerTest, TheHealthOfACheckInOutlastsAnEarlierRefresh) {
  const auto checkIn = [this] {
    host.unixSockets.answers.push_back({R"({"ok":true,"health":{"verdict":"not_protected"}})"});
    host.statusItem.press(host.statusItem.menu[0]);
    host.backgroundQueue.runAll();
    host.mainQueue.runAll();
  };
  host.files.put(std::string(ControlSocket::socketPath), "socket");
  controller->start();
  settle();
  host.mainQueue.advance(5s);  // starts a refresh with the old report
  checkIn();
  EXPECT_EQ(icons().back(), notProtected);
  host.statusQueue.runNext();
  host.mainQueue.runAll();
  EXPECT_EQ(icons().back(), notProtected);
  EXPECT_EQ(host.statusQueue.countWaiting(), 1U) << "a check-in requests a refresh";
  settle();
  EXPECT_EQ(icons().back(), isProtected) << "a later refresh replaces it";
}

TEST_F(MenuBarControllerTest, BackgroundWorkOfADestroyedControllerEndsSilently) {
  controller->start();
  controller->refresh();
  host.statusQueue.runNext();
  controller.reset();
  settle();
  host.mainQueue.advance(1min);
  host.statusItem.click();
  EXPECT_EQ(host.statusQueue.countWaiting() + host.mainQueue.countTimers(), 0U);
  EXPECT_EQ(icons(), std::vector<std::string>{unreported});
}

TEST_F(MenuBarControllerTest, RepeatedOpeningOfThePanelNeverWaitsForTheNextTick) {
  controller->start();
  settle();
  pass(5s);
  for (int opening = 0; opening < 12; ++opening) {
    const auto runs = statusRuns();
    controller->togglePanel();
    controller->togglePanel();
    settle();
    EXPECT_EQ(statusRuns(), runs + 1) << opening;
  }
}

TEST_F(MenuBarControllerTest, AHangingHelperChangesTheIconWithinTwentySecondsUntilItAnswers) {
  controller->start();
  settle();
  EXPECT_EQ(icons().back(), isProtected);
  host.mainQueue.advance(20s);
  EXPECT_EQ(icons().back(), unreported);
  host.mainQueue.advance(1min);
  EXPECT_LE(host.statusQueue.countWaiting(), 8U);
  pass(5s);
  EXPECT_EQ(icons().back(), isProtected);
}

TEST_F(MenuBarControllerTest, AnUnfinishedLoadIsNoRecordAndNoChangeOfTheNetworkExtension) {
  const auto file = folder + "egress-lock-configuration.json";
  host.networkPreferences.contentFilter = ContentFilterConfiguration{.hasProvider = true, .enabled = true};
  host.files.put(std::string(ControlSocket::socketPath), "socket");
  controller->start();
  pass(5s);
  const auto record = host.files.read(file);
  EXPECT_TRUE(record.value_or("").contains(R"("enabled":true)"));
  host.networkPreferences.isDeferred = true;
  pass(30s);
  controller->togglePanel();
  EXPECT_NE(panel().protection->egressLock.state.kind, RowState::Case::ok)
      << "an unknown lock is not shown as on";
  EXPECT_EQ(host.files.read(file), record);
  host.networkPreferences.isDeferred = false;
  pass(70s);
  EXPECT_NE(host.files.read(file), record);
  EXPECT_TRUE(host.unixSockets.connections.empty()) << "nothing has changed";
}

}  // namespace
}  // namespace ostrel
