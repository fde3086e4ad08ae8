#include "Shells/Desktop/Shell/QtDesktop.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QClipboard>
#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPoint>
#include <csignal>
#include <filesystem>
#include <limits>
#include <thread>

#include "Platform/Posix/PosixMainQueue.hpp"
#include "Shells/Desktop/Shell/DesktopBus.hpp"
#include "Tests/Fakes/FakeAlertView.hpp"
#include "Tests/Fakes/FakeLog.hpp"
#include "Tests/Fakes/FakeOnboardingView.hpp"
#include "Tests/Fakes/FakePanelView.hpp"
#include "Tests/Fakes/ShellContract.hpp"
#include "Tests/Shells/Desktop/Shell/FileBrowser.hpp"
#include "Tests/Shells/Desktop/Shell/SessionBus.hpp"
#include "Tests/Shells/Desktop/Shell/SettingsPortal.hpp"
#include "Tests/Shells/Desktop/Shell/TrayWatcher.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

/// Two screens; the second has two pixels a point.
constexpr const char* screens = R"({"screens": [
  {"name": "a", "x": 0, "y": 0, "width": 1280, "height": 800, "dpr": 1},
  {"name": "b", "x": 1280, "y": -100, "width": 960, "height": 540, "dpr": 2}]})";
constexpr DesktopRect first{0, 0, 1280, 800};
constexpr DesktopRect second{1280, -100, 960, 540};

std::expected<std::unique_ptr<AgentWindowView>, std::string> noAgentWindow(Log&, AgentWindowEvents,
                                                                           const AgentWindowContent&,
                                                                           const DesktopTheme&) {
  return std::unexpected("no window");
}

constexpr ViewsPlugIn fakeViews{.build = "",
                                .makePanelView = FakePanelView::make,
                                .drawPanel = nullptr,
                                .makeOnboardingView = FakeOnboardingView::make,
                                .drawOnboarding = nullptr,
                                .makeAlertView = FakeAlertView::make,
                                .drawAlert = nullptr,
                                .makeAgentWindowView = noAgentWindow,
                                .drawAgentWindow = nullptr};

std::ptrdiff_t countEntries(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

struct QtDesktopTest : testing::Test {
  QtDesktopTest() {
    FakePanelView::record() = {};
    FakeOnboardingView::record() = {};
    FakeAlertView::record() = {};
    ::setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + folder.write("screens.json", screens)).c_str(), 1);
    EXPECT_EQ(::pipe(signalPipe), 0);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
  }
  ~QtDesktopTest() override {
    desktop.reset();
    for (const int descriptor : signalPipe) ::close(descriptor);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  }

  void make() {
    auto made = makeQtDesktop({.queueDescriptor = queue.descriptor(),
                               .processDueWork = [this] { queue.processDueWork(); },
                               .signalDescriptor = signalPipe[0],
                               .receivedSignal = [this] { return signal; },
                               .realPath = [](std::string_view path) { return "/real" + std::string(path); },
                               .resources = RESOURCES,
                               .loadViews = [this]() -> std::expected<const ViewsPlugIn*, std::string> {
                                 if (!viewsFailure.empty()) return std::unexpected(viewsFailure);
                                 return &fakeViews;
                               },
                               .log = log});
    ASSERT_TRUE(made) << made.error();
    desktop = std::move(*made);
    if (!peer) peer = std::make_unique<QDBusConnection>(bus.connect());
    desktop->statusItem().install(
        {.clicked = [this] { toggle(); },
         .appearanceChanged = [this] { ++appearances; },
         .menuPressed = [this](const PanelButton& button) { pressed.push_back(button); }});
    desktop->statusItem().show({menubarpicture::Title{"🛡️"}, "text"});
  }

  void toggle() {
    ++clicks;
    auto& shown = desktop->screens();
    if (shown.isPanelShown()) return shown.closePanel();
    heights.push_back(shown.visibleHeight());
    shown.openPanel({});
  }

  QDBusMessage call(const char* path, const QString& interface, const QString& method,
                    const QVariantList& takes) {
    if (!spinUntil([&] { return peer->interface()->isServiceRegistered(name).value(); }))
      ADD_FAILURE() << "no item";
    return answerTo(*peer, callOf(name, path, interface, method, takes));
  }

  void click(int x, int y) { call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", {x, y}); }

  const QString name = QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(::getpid());
  SessionBus bus;
  std::unique_ptr<QDBusConnection> peer;
  TemporaryFolder folder;
  FakeLog log;
  PosixMainQueue queue;
  int signalPipe[2] = {-1, -1};
  std::optional<int> signal;
  std::string viewsFailure;
  std::unique_ptr<Desktop> desktop;
  int clicks = 0;
  int appearances = 0;
  std::vector<std::optional<double>> heights;
  std::vector<PanelButton> pressed;
  FakePanelView::Record& panel = FakePanelView::record();
  FakeOnboardingView::Record& onboarding = FakeOnboardingView::record();
  FakeAlertView::Record& alerts = FakeAlertView::record();
};

TEST_F(QtDesktopTest, KeepsTheContractOfScreensAndStatusItem) {
  make();
  expectShownFromOpeningToClosing(desktop->screens());
  expectEveryClickIsReported(desktop->statusItem(), [this] { click(600, 10); });
}

TEST_F(QtDesktopTest, OpensThePanelAtThePlaceOfTheClickOnItsScreen) {
  make();
  constexpr int least = std::numeric_limits<int>::min();
  constexpr int most = std::numeric_limits<int>::max();
  struct Row {
    QPoint place;
    PanelAnchor anchor;
  };
  const Row rows[] = {
      {{640, 12}, {{640, 12}, first}},
      {{1279, 799}, {{1279, 799}, first}},
      {{1280, -100}, {{1280, -100}, second}},
      {{1280 + 1900, -100 + 20}, {{1280 + 950, -90}, second}},
      {{1280 + 1000, -100 + 1060}, {{1280 + 500, 430}, second}},
      {{0, 0}, {{1279, 0}, first}},
      {{-5, 300}, {{0, 300}, first}},
      {{least, most}, {{0, 799}, first}},
      {{most, least}, {{1279, 0}, first}},
  };
  for (const auto& [place, anchor] : rows) {
    SCOPED_TRACE(testing::Message() << place.x() << ',' << place.y());
    panel.anchors.clear();
    click(place.x(), place.y());
    ASSERT_EQ(panel.anchors.size(), 1U);
    EXPECT_EQ(panel.anchors[0].click, anchor.click)
        << panel.anchors[0].click.x << ',' << panel.anchors[0].click.y;
    EXPECT_EQ(panel.anchors[0].available, anchor.available);
    EXPECT_EQ(heights.back(), anchor.available.height);
    click(place.x(), place.y());
    EXPECT_FALSE(panel.isShown);
  }
  EXPECT_EQ(panel.windows, 1);
}

TEST_F(QtDesktopTest, LeavesThePanelClosedWhenTheClickTookTheFocusFromIt) {
  make();
  click(600, 10);
  ASSERT_TRUE(panel.isShown);
  FakePanelView::loseFocus();
  click(600, 10);
  EXPECT_FALSE(panel.isShown);
  click(600, 10);
  EXPECT_TRUE(panel.isShown) << "the next click is a new one";
  FakePanelView::loseFocus();
  QElapsedTimer timer;
  timer.start();
  EXPECT_TRUE(spinUntil([&] { return timer.elapsed() > 450; }));
  click(600, 10);
  EXPECT_TRUE(panel.isShown) << "the user came back later";
  EXPECT_EQ(clicks, 3);
}

TEST_F(QtDesktopTest, OpenPanelGetsAnotherThemeOnce) {
  make();
  SettingsPortal portal(*peer, {{"org.freedesktop.appearance", {{"color-scheme", 1U}}}});
  ASSERT_TRUE(spinUntil([&] { return appearances == 1; }));
  EXPECT_EQ(desktop->statusItem().appearance(), Appearance::dark);
  click(600, 10);
  ASSERT_EQ(panel.themes.size(), 1U);
  EXPECT_EQ(panel.themes[0].appearance, Appearance::dark);
  portal.change("org.freedesktop.appearance", "color-scheme", 2U);
  portal.change("org.freedesktop.appearance", "color-scheme", 2U);
  ASSERT_TRUE(spinUntil([&] { return appearances == 2; }));
  EXPECT_EQ(desktop->statusItem().appearance(), Appearance::light);
  portal.change("org.freedesktop.appearance", "reduced-motion", 1U);
  ASSERT_TRUE(spinUntil([&] { return panel.themes.size() == 3; }));
  EXPECT_EQ(panel.themes[1], DesktopTheme{});
  EXPECT_EQ(panel.themes[2], DesktopTheme{.reducesMotion = true});
  EXPECT_EQ(appearances, 2) << "the icon is the same with less motion";
  EXPECT_TRUE(panel.isShown);
}

TEST_F(QtDesktopTest, LogsOnceThatThePanelCannotBeShown) {
  for (const bool isMissing : {true, false}) {
    log.lines.clear();
    viewsFailure = isMissing ? "no plug-in" : "";
    panel.failure = "no window";
    make();
    for (int again = 0; again < 3; ++again) click(600, 10);
    desktop->screens().updatePanel({});
    desktop->screens().closePanel();
    EXPECT_FALSE(desktop->screens().isPanelShown());
    const std::string reason = isMissing ? "no plug-in" : "no window";
    EXPECT_EQ(std::ranges::count(log.lines, "ostrel: the panel cannot be shown: " + reason), 1);
    desktop.reset();
  }
}

TEST_F(QtDesktopTest, PassesContentThemeAndPressesOfTheOnboardingWindow) {
  make();
  auto& window = desktop->onboardingWindow();
  desktop->shell().activate();
  window.update({});
  EXPECT_TRUE(onboarding.contents.empty()) << "there is nothing to show it in";
  int closings = 0;
  std::string typed;
  OnboardingContent content;
  content.windowTitle = "title";
  window.open(content, {.pressed = [&](OnboardingAction, const std::string& token) { typed = token; },
                        .closed = [&] { ++closings; }});
  desktop->shell().activate();
  window.clearToken();
  window.update({});
  EXPECT_EQ(onboarding.contents, (std::vector{content, OnboardingContent()}));
  EXPECT_EQ(onboarding.activations, 1);
  EXPECT_EQ(onboarding.clearings, 1);
  onboarding.events.pressed(OnboardingAction::enrol, "token");
  EXPECT_EQ(typed, "token");
  const SettingsPortal portal(*peer, {{"org.freedesktop.appearance", {{"color-scheme", 1U}}}});
  ASSERT_TRUE(spinUntil([&] { return onboarding.themes.size() == 2; }));
  EXPECT_EQ(onboarding.themes[1].appearance, Appearance::dark);
  window.close();
  EXPECT_EQ(closings, 1);
}

TEST_F(QtDesktopTest, CountsAnAgentWindowThatCannotBeShownAsClosed) {
  make();
  int closings = 0;
  AgentWindowEvents events;
  events.closed = [&] {
    if (++closings == 2) desktop->shell().terminate();
  };
  desktop->agentWindow().onEvents(std::move(events));
  for (int i = 0; i < 2; ++i) desktop->agentWindow().open({}, {780, 540});
  EXPECT_EQ(closings, 0) << "not within the call";
  desktop->agentWindow().update({});
  desktop->agentWindow().close();
  EXPECT_EQ(desktop->shell().run(), 0);
  EXPECT_EQ(std::ranges::count(log.lines, "ostrel: the agent window cannot be shown: no window"), 1);
}

TEST_F(QtDesktopTest, CountsAnOnboardingWindowThatCannotBeShownAsClosed) {
  for (const bool isMissing : {true, false}) {
    log.lines.clear();
    viewsFailure = isMissing ? "no plug-in" : "";
    onboarding.failure = "no window";
    make();
    bool isOpening = true;
    int closings = 0;
    desktop->onboardingWindow().open({}, {.pressed = {}, .closed = [&] {
                                            EXPECT_FALSE(isOpening);
                                            ++closings;
                                            desktop->shell().terminate();
                                          }});
    isOpening = false;
    desktop->onboardingWindow().update({});
    desktop->onboardingWindow().close();
    EXPECT_EQ(desktop->shell().run(), 0);
    EXPECT_EQ(closings, 1);
    const std::string reason = isMissing ? "no plug-in" : "no window";
    EXPECT_EQ(std::ranges::count(log.lines, "ostrel: the window cannot be shown: " + reason), 1);
    desktop.reset();
  }
}

TEST_F(QtDesktopTest, ShowsAlertsOneAfterTheOther) {
  make();
  std::vector<std::string> answers;
  const auto show = [&](const char* title, auto then) {
    desktop->alerts().show({title, "", {"Yes", "No"}}, [&answers, title, then](std::size_t button) {
      answers.push_back(title + std::to_string(button));
      then();
    });
  };
  const auto nothing = [] {};
  const auto answer = [&](std::size_t button) {
    const auto before = answers.size();
    FakeAlertView::answer(button);
    EXPECT_EQ(answers.size(), before) << "the window is still at work";
    EXPECT_TRUE(spinUntil([&] { return answers.size() == before + 1; }));
  };
  show("a", [&] { show("c", nothing); });
  show("b", nothing);
  ASSERT_EQ(alerts.alerts.size(), 1U);
  EXPECT_EQ(alerts.alerts[0], (Alert{"a", "", {"Yes", "No"}}));
  answer(1);
  EXPECT_EQ(alerts.alerts.size(), 2U) << "c waits for b";
  answer(0);
  answer(1);
  EXPECT_EQ(answers, (std::vector<std::string>{"a1", "b0", "c1"}));
  EXPECT_EQ(alerts.alerts.back().title, "c");
  EXPECT_FALSE(alerts.isShown);
  EXPECT_EQ(alerts.windows, 1);
}

TEST_F(QtDesktopTest, HasAnOpenAlertInFrontOfAllElse) {
  make();
  click(600, 10);
  ASSERT_TRUE(panel.isShown);
  bool isAnswered = false;
  desktop->alerts().show({"title", "", {"OK"}}, [&](std::size_t) { isAnswered = true; });
  EXPECT_FALSE(panel.isShown);
  EXPECT_EQ(alerts.activations, 0) << "it has opened with the focus";
  click(600, 10);
  EXPECT_FALSE(panel.isShown);
  EXPECT_EQ(alerts.activations, 1);
  desktop->shell().activate();
  EXPECT_EQ(alerts.activations, 2);
  const SettingsPortal portal(*peer, {{"org.freedesktop.appearance", {{"color-scheme", 1U}}}});
  ASSERT_TRUE(spinUntil([&] { return alerts.themes.size() == 2; }));
  EXPECT_EQ(alerts.themes[1].appearance, Appearance::dark);
  FakeAlertView::answer(0);
  EXPECT_TRUE(spinUntil([&] { return isAnswered; }));
  desktop->shell().activate();
  EXPECT_EQ(alerts.activations, 2);
  click(600, 10);
  EXPECT_TRUE(panel.isShown);
}

TEST_F(QtDesktopTest, CountsAnAlertThatCannotBeShownAsClosedByItsLastButton) {
  for (const bool isMissing : {true, false}) {
    log.lines.clear();
    viewsFailure = isMissing ? "no plug-in" : "";
    alerts.failure = "no window";
    make();
    std::vector<std::size_t> answers;
    const auto record = [&](std::size_t button) { answers.push_back(button); };
    desktop->alerts().show({"title", "", {"Yes", "No"}}, record);
    EXPECT_TRUE(answers.empty()) << "not inside the call";
    desktop->shell().activate();
    EXPECT_TRUE(spinUntil([&] { return !answers.empty(); }));
    const std::string reason = isMissing ? "no plug-in" : "no window";
    EXPECT_EQ(std::ranges::count(log.lines, "ostrel: the alert cannot be shown: " + reason), 1);
    viewsFailure = alerts.failure = "";
    desktop->alerts().show({"title", "", {"OK"}}, record);
    EXPECT_TRUE(alerts.isShown) << "the next one is tried again";
    EXPECT_EQ(answers, std::vector<std::size_t>{1});
    desktop.reset();
  }
}

TEST_F(QtDesktopTest, EndsAnOpenAlertWithoutAnAnswer) {
  for (const bool isPressed : {false, true}) {
    make();
    int answers = 0;
    desktop->alerts().show({"title", "", {"OK"}}, [&](std::size_t) { ++answers; });
    if (isPressed) FakeAlertView::answer(0);
    desktop.reset();
    EXPECT_FALSE(alerts.isShown);
    EXPECT_EQ(answers, 0);
  }
}

TEST_F(QtDesktopTest, PassesPressesOfThePanelAndOfTheMenu) {
  make();
  const PanelButton quit{.title = "Quit", .action = PanelAction::quitStatusIcon};
  std::vector<PanelButton> ofPanel;
  desktop->screens().onPanelButton([&](const PanelButton& button) { ofPanel.push_back(button); });
  desktop->statusItem().showMenu({quit});
  call("/StatusItemMenu", "com.canonical.dbusmenu", "Event",
       {1, "clicked", QVariant::fromValue(QDBusVariant("")), 0U});
  EXPECT_EQ(pressed, std::vector{quit});
  click(600, 10);
  panel.events.pressed(quit);
  EXPECT_EQ(ofPanel, std::vector{quit});
  desktop->screens().updatePanel({});
  EXPECT_EQ(panel.updates.size(), 1U);
}

TEST_F(QtDesktopTest, ShowsTheRealFileInTheFileManager) {
  make();
  const FileBrowser browser(*peer);
  std::optional<bool> isShown;
  desktop->fileManager().reveal("/ca.pem", [&](bool answer) { isShown = answer; });
  EXPECT_TRUE(spinUntil([&] { return isShown.has_value(); }));
  EXPECT_EQ(isShown, true);
  EXPECT_EQ(browser.asked, QList<QStringList>{{"file:///real/ca.pem"}});
}

TEST_F(QtDesktopTest, TakesTextOntoThePasteboardWhereItOwnsItAfterwards) {
  make();
  EXPECT_TRUE(desktop->pasteboard().setText("ü"));
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "ü");
  desktop.reset();
  ::setenv("QT_QPA_PLATFORM", "minimal", 1);
  make();
  EXPECT_FALSE(desktop->pasteboard().setText("ü"));
}

TEST_F(QtDesktopTest, ServesTheMainQueueUntilItIsTerminated) {
  make();
  std::vector<int> order;
  queue.post([&] { order.push_back(1); });
  std::jthread other([&] { queue.post([&] { order.push_back(2), desktop->shell().terminate(); }); });
  EXPECT_EQ(desktop->shell().run(), 0);
  other.join();
  EXPECT_TRUE(std::ranges::is_permutation(order, std::vector{1, 2}));
  desktop->shell().terminate();
  EXPECT_EQ(desktop->shell().run(), 0) << "ended before the loop started";
  desktop->shell().terminate(3);
  desktop->shell().terminate(4);
  EXPECT_EQ(desktop->shell().run(), 3) << "the first status counts";
}

TEST_F(QtDesktopTest, EndsBySignalsWithTheirStatus) {
  make();
  signal = SIGTERM;
  EXPECT_EQ(::write(signalPipe[1], "", 1), 1);
  EXPECT_EQ(desktop->shell().run(), 128 + SIGTERM);
}

TEST_F(QtDesktopTest, LeavesNothingBehind) {
  const auto once = [&] {
    make();
    click(600, 10);
    EXPECT_TRUE(panel.isShown);
    const auto wakes = desktop->systemWake().observe([] {});
    desktop->notifications().post({}, [](const auto&) {});
    answerTo(*peer, busCall("GetId"));
    desktop.reset();
    EXPECT_FALSE(panel.isShown);
    EXPECT_TRUE(becomesTrue([&] { return !peer->interface()->isServiceRegistered(name).value(); }));
  };
  const auto left = [] { return std::pair(countEntries("/proc/self/fd"), countEntries("/proc/self/task")); };
  once();
  once();
  const auto before = left();
  for (int again = 0; again < 3; ++again) once();
  // The toolkit closes connections on a thread of its own.
  EXPECT_TRUE(becomesTrue([&] { return left() <= before; }));
}

}  // namespace
}  // namespace ostrel
