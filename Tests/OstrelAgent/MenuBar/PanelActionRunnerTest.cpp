#include "OstrelAgent/MenuBar/PanelActionRunner.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

using Lines = std::vector<std::string>;

/// The actions over a host of fakes, with an open panel.
struct PanelActionRunnerTest : testing::Test {
  PanelActionRunnerTest() {
    host.files.putExecutable(host.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
    host.files.put(std::string(ControlSocket::socketPath), "socket");
    host.bundle.resources["captured-hosts.json"] = R"(["registry.npmjs.org"])";
    const ControlSocket socket(host.unixSockets, host.files);
    actions = std::make_shared<PanelActionRunner>(
        PanelActionRunner::Services{host.mainQueue, host.backgroundQueue, host.clock, host.bundle, host.log,
                                    host.shell, host.pasteboard, host.alerts},
        PanelActionRunner::Collaborators{
            .presenter = presenter,
            .refresh =
                [this] {
                  ++refreshes;
                  alertsAtRefresh = host.alerts.shown.size();
                },
            .helper = HelperRunner(host.bundle, host.files, host.childProcesses, host.standardStreams),
            .socket = socket,
            .trust = DeviceCATrust(socket, host.files, host.childProcesses, host.userAccount),
            .configurations = NetworkConfigurations(host.networkPreferences, host.mainQueue, host.log,
                                                    Records(host.files, host.clock, host.userAccount))});
    callbacks = actions->callbacks();
    presenter->start(callbacks, [this](const auto& health) { applied = health; });
    host.screens.openPanel({});
  }

  void answer(const char* text) { host.unixSockets.answers.push_back({std::string(text) + "\n"}); }

  void settle() {
    host.backgroundQueue.runAll();
    host.mainQueue.runAll();
  }

  FakeHost host;
  std::shared_ptr<PanelPresenter> presenter = std::make_shared<PanelPresenter>(
      PanelPresenter::Services{host.clock, host.timeFormat, host.shell, host.screens});
  StatusPanelModel& model = presenter->model();
  int refreshes = 0;
  std::size_t alertsAtRefresh = 0;
  std::optional<StatusReport::Health> applied;
  std::shared_ptr<PanelActionRunner> actions;
  StatusPanelActions callbacks;
};

TEST_F(PanelActionRunnerTest, ACheckInByTheUserShowsItsProgressAndThenItsNotice) {
  answer(R"({"ok":true,"checked_in":true,"health":{"verdict":"degraded"}})");
  callbacks.checkNow();
  callbacks.checkNow();
  EXPECT_TRUE(model.checkinInFlight);
  EXPECT_EQ(host.backgroundQueue.countWaiting(), 1U) << "one at a time";
  settle();
  EXPECT_EQ(host.unixSockets.connections.at(0).writes.at(0),
            "{\"action\":\"checkin\",\"reason\":\"user\"}\n");
  EXPECT_FALSE(model.checkinInFlight);
  EXPECT_EQ(model.checkinNotice, "Checked in");
  EXPECT_EQ(applied->verdict, "degraded");
  EXPECT_EQ(refreshes, 1);
  host.mainQueue.advance(1s);
  answer(R"({"ok":true,"health":{"verdict":7}})");
  applied.reset();
  callbacks.checkNow();
  settle();
  EXPECT_EQ(model.checkinNotice, "Skipped");
  EXPECT_EQ(applied, std::nullopt) << "health that cannot be read";
  host.mainQueue.advance(5999ms);
  EXPECT_EQ(model.checkinNotice, "Skipped") << "the timer of the first notice does not end the second";
  const auto before = host.screens.panels.size();
  host.mainQueue.advance(1ms);
  EXPECT_EQ(model.checkinNotice, std::nullopt);
  EXPECT_GT(host.screens.panels.size(), before);
}

TEST_F(PanelActionRunnerTest, ACheckInForAnotherReasonShowsOnlyItsHealth) {
  answer(R"({"ok":true,"checked_in":true,"health":{"verdict":"protected"}})");
  actions->checkNow("network");
  EXPECT_FALSE(model.checkinInFlight);
  settle();
  EXPECT_EQ(model.checkinNotice, std::nullopt);
  EXPECT_EQ(applied->verdict, "protected");
  EXPECT_EQ(refreshes, 1);
}

TEST_F(PanelActionRunnerTest, DiagnosticsAreCopiedWhenTheHelperGaveThem) {
  model.snap.sysextActive = true;
  host.childProcesses.script = {ChildResult{0, "all is well\n"}, ChildResult{3, "half of"},
                                ChildResult{0, "all is well\n"}};
  callbacks.copyDiagnostics();
  EXPECT_TRUE(model.diagnosticsInFlight);
  settle();
  EXPECT_EQ(host.childProcesses.commands.at(0).arguments,
            (Lines{"diagnostics", "--network-extension", networkExtensionStates(model.snap)}));
  EXPECT_FALSE(model.diagnosticsInFlight);
  EXPECT_EQ(host.pasteboard.content, "all is well\n");
  EXPECT_EQ(model.diagnosticsNotice, "Diagnostics copied. Paste them to your administrator.");
  callbacks.copyDiagnostics();
  settle();
  EXPECT_EQ(host.pasteboard.content, "all is well\n");
  EXPECT_EQ(model.diagnosticsNotice, "Couldn't collect diagnostics (exit 3). Try again in a moment.");
  host.mainQueue.advance(8s);
  EXPECT_EQ(model.diagnosticsNotice, std::nullopt);
  EXPECT_EQ(host.log.lines, Lines());
  host.pasteboard.refuses = true;
  callbacks.copyDiagnostics();
  settle();
  EXPECT_EQ(model.diagnosticsNotice, "Couldn't collect diagnostics (exit 1). Try again in a moment.");
  EXPECT_EQ(host.log.lines, Lines{"ostrel: could not copy the diagnostics"});
}

TEST_F(PanelActionRunnerTest, DiagnosticsAreSentAndAnEarlierSendingIsRemembered) {
  host.childProcesses.script = {ChildResult{0, R"({"sent":true})"},
                                ChildResult{0, R"({"sent":false,"retry_after_seconds":90})"}};
  const auto sentAt = host.clock.now();
  callbacks.sendDiagnostics();
  EXPECT_TRUE(model.sendDiagnosticsInFlight);
  settle();
  EXPECT_EQ(host.childProcesses.commands.at(0).arguments.back(), "--send");
  EXPECT_EQ(model.diagnosticsSentAt, sentAt);
  EXPECT_EQ(model.sendDiagnosticsError, std::nullopt);
  host.clock.advance(1min);
  callbacks.sendDiagnostics();
  settle();
  EXPECT_EQ(model.sendDiagnosticsError, "Already sent recently. Try again in 2 min.");
  EXPECT_EQ(model.diagnosticsSentAt, sentAt);
  host.childProcesses.script = {ChildResult{0, ""}};
  callbacks.sendDiagnostics();
  EXPECT_EQ(model.sendDiagnosticsError, std::nullopt);
  settle();
  EXPECT_FALSE(model.sendDiagnosticsInFlight);
}

TEST_F(PanelActionRunnerTest, AnUpdateIsInstalledOnlyWhenTheUserConfirms) {
  callbacks.installUpdate();
  callbacks.installUpdate();
  ASSERT_EQ(host.alerts.shown.size(), 1U);
  EXPECT_EQ(host.alerts.shown[0].buttons, (Lines{"Install", "Cancel"}));
  EXPECT_EQ(host.shell.activations, 1);
  host.alerts.press(1);
  EXPECT_FALSE(model.updateInFlight);
  EXPECT_EQ(host.backgroundQueue.countWaiting(), 0U);
  callbacks.installUpdate();
  answer(R"({"ok":true})");
  host.alerts.press(0);
  EXPECT_TRUE(model.updateInFlight);
  callbacks.installUpdate();
  EXPECT_EQ(host.alerts.shown.size(), 0U) << "it is being installed";
  settle();
  EXPECT_EQ(host.unixSockets.connections.at(0).writes.at(0), "{\"action\":\"update\"}\n");
  EXPECT_TRUE(model.updateInFlight);
}

TEST_F(PanelActionRunnerTest, AnUpdateThatCannotBeStartedIsShownAndMayBeRetried) {
  callbacks.installUpdate();
  answer(R"({"ok":false,"error":"unknown action"})");
  host.alerts.press(0);
  settle();
  EXPECT_FALSE(model.updateInFlight);
  ASSERT_EQ(host.alerts.shown.size(), 1U);
  EXPECT_EQ(host.alerts.shown[0].title, "Couldn't start the update");
  EXPECT_EQ(host.alerts.shown[0].buttons, Lines{"OK"});
  host.alerts.press(0);
  callbacks.installUpdate();
  EXPECT_EQ(host.alerts.shown.size(), 1U);
}

TEST_F(PanelActionRunnerTest, AnUpdateSettlesWhenNoneIsOfferedOrAfterAQuarterOfAnHour) {
  const auto with = [](const char* state) {
    Snapshot snapshot;
    if (state != nullptr) snapshot.update = StatusReport::Update{state, std::nullopt, std::nullopt};
    return snapshot;
  };
  struct Row {
    const char* state;
    std::chrono::milliseconds passed;
    bool isInFlight;
  };
  const Row rows[] = {{"available", 0s, true},  {"eol", 899999ms, true}, {"available", 900s, false},
                      {"eol", 900s, false},     {"none", 0s, false},     {nullptr, 0s, false},
                      {"available", -24h, true}};
  for (const auto& row : rows) {
    callbacks.installUpdate();
    answer(R"({"ok":true})");
    host.alerts.press(0);
    settle();
    host.clock.advance(row.passed);
    presenter->publish(with(row.state));
    EXPECT_EQ(model.updateInFlight, row.isInFlight) << (row.state ? row.state : "absent") << row.passed;
    presenter->publish(with(nullptr));
  }
}

TEST_F(PanelActionRunnerTest, ALockThatCannotBeSavedIsLoggedAndTheStatusReadAgain) {
  host.networkPreferences.contentFilter = ContentFilterConfiguration{};
  callbacks.enableEgressLock();
  settle();
  EXPECT_TRUE(host.networkPreferences.contentFilter->enabled);
  EXPECT_EQ(refreshes, 1);
  EXPECT_EQ(host.log.lines, Lines{});
  host.networkPreferences.filterSaveError = PlatformError{"NEFilterErrorDomain", 5, "permission denied"};
  callbacks.enableEgressLock();
  callbacks.enableEgressLock();
  settle();
  EXPECT_EQ(refreshes, 2) << "the second press came while the first was in progress";
  EXPECT_EQ(host.log.lines, Lines{"ostrel: could not save the content filter: permission denied"});
  EXPECT_EQ(host.alerts.shown.size(), 0U);
}

TEST_F(PanelActionRunnerTest, AFilterThatCannotBeSavedIsLoggedThenReadAgainThenShown) {
  callbacks.enableTransparentProxy();
  settle();
  EXPECT_TRUE(host.networkPreferences.transparentProxies->at(0).connected);
  EXPECT_EQ(host.alerts.shown.size(), 0U);
  host.networkPreferences.proxySaveErrors = {PlatformError{vpnErrorDomain, 5, "permission denied"}};
  callbacks.enableTransparentProxy();
  settle();
  EXPECT_EQ(host.log.lines,
            Lines{"ostrel: could not save the transparent proxy: save proxy prefs: permission denied"});
  host.bundle.resources.clear();
  callbacks.enableTransparentProxy();
  EXPECT_EQ(refreshes, 3);
  ASSERT_EQ(host.alerts.shown.size(), 2U);
  EXPECT_EQ(alertsAtRefresh, 1U) << "of the earlier failure alone";
  EXPECT_EQ(host.alerts.shown[0].title, "Couldn't turn the network filter back on");
  EXPECT_EQ(host.alerts.shown[0].text, "save proxy prefs: permission denied");
}

TEST_F(PanelActionRunnerTest, AFailedTrustIsShownButADeclinedOneIsNot) {
  host.files.folders.insert("/tmp");
  const char* certificate = R"({"ok":true,"ca_trusted":false,"ca_cert_pem":"PEM"})";
  answer(certificate);
  host.childProcesses.script = {ChildResult{1, "", "The authorization was canceled by the user.\n"}};
  callbacks.trustDeviceCA();
  callbacks.trustDeviceCA();
  EXPECT_EQ(host.backgroundQueue.countWaiting(), 1U);
  settle();
  EXPECT_EQ(host.alerts.shown.size(), 0U);
  answer(certificate);
  host.childProcesses.script = {ChildResult{1, "", "broken\n"}};
  callbacks.trustDeviceCA();
  settle();
  EXPECT_EQ(refreshes, 2);
  EXPECT_EQ(alertsAtRefresh, 0U);
  ASSERT_EQ(host.alerts.shown.size(), 1U);
  EXPECT_EQ(host.alerts.shown[0].title, "Couldn't trust this Mac's device certificate");
  EXPECT_EQ(host.log.lines.size(), 1U);
}

TEST_F(PanelActionRunnerTest, WorkOfADestroyedPanelEndsSilently) {
  host.childProcesses.answer = [](const auto&) { return ChildResult{0, "{}"}; };
  host.networkPreferences.contentFilter = ContentFilterConfiguration{};
  for (const auto& work :
       {callbacks.copyDiagnostics, callbacks.sendDiagnostics, callbacks.enableEgressLock}) {
    work();
  }
  callbacks.installUpdate();
  const auto before = host.screens.panels.size();
  actions.reset();
  settle();
  host.alerts.press(0);
  callbacks.checkNow();
  EXPECT_EQ(host.screens.panels.size(), before);
  EXPECT_EQ(refreshes, 0);
  EXPECT_EQ(host.backgroundQueue.countWaiting(), 0U);
}

}  // namespace
}  // namespace ostrel
