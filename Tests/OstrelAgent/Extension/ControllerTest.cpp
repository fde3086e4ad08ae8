#include "OstrelAgent/Extension/Controller.hpp"

#include <gtest/gtest.h>

#include <cerrno>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Action = Controller::Action;

constexpr const char* daemonFile = "/Library/LaunchDaemons/tech.brenn.ostrel-agent-endpoint.plist";
constexpr const char* jobFile = "/Users/robin/Library/LaunchAgents/tech.brenn.ostrel-agent.menubar.plist";
constexpr const char* recordFile =
    "/Users/robin/Library/Application Support/ostrel-agent-endpoint/applied-capture.json";
constexpr const char* helper = "/Applications/OstrelAgent.app/Contents/Helpers/ostrel-agent-endpoint";

constexpr const char* activating =
    "==> activating the System Extension…\n"
    "system extension activate: result=0\n";
constexpr const char* activated =
    "egress lock enabled — reaching a captured registry any way other than through Ostrel Guard is now "
    "denied.\n"
    "menu bar:    status UI running (now and at every login)\n"
    "transparent proxy enabled — npm registry traffic now flows through Ostrel Guard.\n";
constexpr const char* reactivating =
    "==> re-activating the System Extension (post-upgrade)…\n"
    "system extension reactivate: result=0\n";
constexpr const char* deactivating =
    "==> deactivating the System Extension…\n"
    "system extension deactivate: result=0\n";

PlatformError stale() { return {vpnErrorDomain, 4, "The configuration is stale."}; }

/// A Mac with daemon and helper, on which a command is run.
struct ControllerTest : testing::Test {
  ControllerTest() {
    host.files.put(daemonFile, "");
    host.files.putExecutable(helper);
    host.bundle.resources["captured-hosts.json"] = R"(["pypi.org","ghcr.io"])";
    host.childProcesses.answer = [this](const ChildCommand& command) {
      return ChildResult{command.executable == helper ? helperStatus : 0, ""};
    };
  }

  void run(Action action, bool extensionOnly = false) {
    host.shell.terminations = 0;
    host.shell.exitStatus.reset();
    const HelperRunner runner(host.bundle, host.files, host.childProcesses, host.standardStreams);
    const Records records(host.files, host.clock, host.userAccount);
    controller = std::make_shared<Controller>(
        Controller::Command{action, extensionOnly},
        Controller::Services{host.mainQueue, host.backgroundQueue, host.systemExtensions, host.files,
                             host.bundle, host.standardStreams, host.shell},
        runner, NetworkConfigurations(host.networkPreferences, host.mainQueue, host.log, records),
        MenuBarAgent(host.bundle, host.files, host.childProcesses, host.standardStreams, host.userAccount));
    controller->run();
  }

  /// Runs all work that is due, without moving the clock.
  void settle() {
    do {
      host.mainQueue.runAll();
      host.backgroundQueue.runAll();
      host.mainQueue.runAll();
    } while (host.backgroundQueue.countWaiting() > 0);
  }

  void complete(SystemExtensionResult result = SystemExtensionResult::completed) {
    host.systemExtensions.delegate()->finished(result);
    settle();
  }

  /// The output since the last call, and how the process ended.
  void expect(const std::string& output, const std::string& error, std::optional<int> status) {
    EXPECT_EQ(std::exchange(host.standardStreams.output, ""), output);
    EXPECT_EQ(std::exchange(host.standardStreams.error, ""), error);
    EXPECT_EQ(host.shell.exitStatus, status);
  }

  std::vector<std::string> launchctlCalls() const {
    std::vector<std::string> calls;
    for (const auto& command : host.childProcesses.commands) {
      if (command.executable == "/bin/launchctl") calls.push_back(command.arguments.at(0));
    }
    return calls;
  }

  FakeHost host;
  std::int32_t helperStatus = 0;
  std::shared_ptr<Controller> controller;
};

TEST_F(ControllerTest, ActivateSavesBothConfigurationsTheRecordAndTheMenuBarAgent) {
  run(Action::activate);
  expect("==> activating the System Extension…\n", "", std::nullopt);
  ASSERT_EQ(host.systemExtensions.requests.size(), 1U);
  EXPECT_EQ(host.systemExtensions.requests[0].action, SystemExtensionAction::activation);
  EXPECT_EQ(host.systemExtensions.requests[0].identifier, "tech.brenn.ostrel-agent.sysext");
  EXPECT_EQ(host.systemExtensions.delegate()->replacementOfInstalled(), SystemExtensionReplacement::replace);
  complete(SystemExtensionResult::completesAfterReboot);
  expect("system extension activate: result=1\n" + std::string(activated), "", 0);
  const auto& proxies = *host.networkPreferences.transparentProxies;
  ASSERT_EQ(proxies.size(), 1U);
  EXPECT_TRUE(proxies[0].enabled && proxies[0].connected);
  EXPECT_TRUE(host.networkPreferences.contentFilter->enabled);
  EXPECT_TRUE(host.files.exists(recordFile) && host.files.exists(jobFile));
}

TEST_F(ControllerTest, NoRequestIsMadeWithoutADaemonOrTheListOfHosts) {
  const std::string refusal = "captured-hosts.json of the application cannot be used (";
  host.files.files.erase(daemonFile);
  run(Action::activate);
  expect(
      "",
      "no enforcement daemon installed — activate wires the System Extension onto the root daemon but never "
      "installs one. Install it first as root:\n"
      "  sudo \"/Applications/OstrelAgent.app/Contents/Helpers/ostrel-agent-endpoint\" install --system "
      "--token zq_org_…\n"
      "(or deploy via MDM), then re-run: OstrelAgent activate\n",
      1);
  host.bundle.resources["captured-hosts.json"] = R"(["pypi.org",)";
  run(Action::reactivate);
  expect("", refusal + "it is no JSON list) — install the application again\n", 1);
  host.files.put(daemonFile, "");
  host.bundle.resources.clear();
  run(Action::activate);
  expect("", refusal + "No such file or directory) — install the application again\n", 1);
  EXPECT_TRUE(host.systemExtensions.requests.empty());
  host.files.files.erase(daemonFile);
  run(Action::deactivate);
  EXPECT_EQ(host.systemExtensions.requests.size(), 1U) << "needs neither";
}

TEST_F(ControllerTest, ApprovalIsAwaitedExceptByAReactivation) {
  run(Action::activate);
  host.systemExtensions.delegate()->needsUserApproval();
  host.systemExtensions.delegate()->needsUserApproval();
  host.mainQueue.advance(24h);
  expect(
      "==> activating the System Extension…\n"
      "approval required → open System Settings ▸ General ▸ Login Items & Extensions (older macOS: Privacy & "
      "Security) and Allow the Ostrel Guard system extension. Leave this running: the moment you approve, "
      "setup "
      "finishes on its own — no need to re-run activate.\n",
      "", std::nullopt);
  complete();
  expect("system extension activate: result=0\n" + std::string(activated), "", 0);

  run(Action::deactivate);
  host.systemExtensions.delegate()->needsUserApproval();
  expect(
      "==> deactivating the System Extension…\n"
      "approval required → macOS is asking you to approve REMOVING the Ostrel Agent system extension. Open "
      "System Settings ▸ General ▸ Login Items & Extensions (older macOS: Privacy & Security) and allow the "
      "removal. Leave this running: the uninstall continues as soon as you approve.\n",
      "", std::nullopt);

  run(Action::reactivate);
  host.systemExtensions.delegate()->needsUserApproval();
  complete();
  expect("==> re-activating the System Extension (post-upgrade)…\n",
         "re-activation needs approval that has not propagated yet — deferring (sysext stays on the old "
         "version)\n",
         1);
}

TEST_F(ControllerTest, AFailedRequestIsReportedAlsoAfterAskingForApproval) {
  const std::pair<Action, const char*> rows[] = {
      {Action::activate, "activate"}, {Action::deactivate, "deactivate"}, {Action::reactivate, "reactivate"}};
  for (const auto& [action, word] : rows) {
    run(action);
    if (action != Action::reactivate) host.systemExtensions.delegate()->needsUserApproval();
    host.standardStreams.output.clear();
    host.systemExtensions.delegate()->failed({"OSSystemExtensionErrorDomain", 1, "It was denied."});
    expect("", "system extension " + std::string(word) + " failed: It was denied.\n", 1);
    EXPECT_EQ(Controller::actionOf(word), action);
  }
}

TEST_F(ControllerTest, OnlyTheFirstAnswerToTheRequestCounts) {
  run(Action::activate);
  const auto delegate = host.systemExtensions.delegate();
  delegate->finished(SystemExtensionResult::completed);
  delegate->finished(SystemExtensionResult::completed);
  delegate->failed(stale());
  delegate->needsUserApproval();
  settle();
  delegate->failed(stale());
  delegate->finished(SystemExtensionResult::completed);
  settle();
  expect(std::string(activating) + activated, "", 0);
  EXPECT_EQ(host.shell.terminations, 1);
  EXPECT_EQ(launchctlCalls(), (std::vector<std::string>{"bootout", "bootstrap"}));
}

TEST_F(ControllerTest, AStaleConfigurationIsRetriedElevenTimesAtMost) {
  for (const bool recovers : {true, false}) {
    host.networkPreferences.proxySaveErrors.assign(recovers ? 11 : 12, stale());
    run(Action::activate);
    complete();
    std::string output = activating;
    for (int next = 2; next <= 12; ++next) {
      output +=
          "save proxy prefs: The configuration is stale. — sysext/NE registration still settling, retry " +
          std::to_string(next) + "/12 in 1.5s\n";
      host.mainQueue.advance(1499ms);
      expect(std::exchange(output, ""), "", std::nullopt);
      host.mainQueue.advance(1ms);
      settle();
    }
    expect(recovers ? activated : "", recovers ? "" : "save proxy prefs: The configuration is stale.\n",
           recovers ? 0 : 1);
  }
}

TEST_F(ControllerTest, EveryStageFailsWithItsNameAndOnlyTransientErrorsAreRetried) {
  auto& preferences = host.networkPreferences;
  const PlatformError other{vpnErrorDomain, 5, "read-write failed"};
  const PlatformError filter{"NEFilterErrorDomain", 4, "of another domain"};
  const PlatformError invalid{vpnErrorDomain, 1, "is invalid"};
  struct Row {
    std::function<void()> arrange;
    std::string line;
    bool isTransient;
  };
  const Row rows[] = {
      {[&] { preferences.proxySaveErrors = {other}; }, "save proxy prefs: read-write failed", false},
      {[&] { preferences.proxySaveErrors = {filter}; }, "save proxy prefs: of another domain", false},
      {[&] { preferences.startError = invalid; }, "start proxy: is invalid", true},
      {[&] { preferences.startError = other; }, "start proxy: read-write failed", false},
      {[&] { preferences.transparentProxies = std::unexpected(stale()); },
       "load proxy prefs: The configuration is stale.", true},
      {[&] { preferences.transparentProxies = std::unexpected(other); },
       "load proxy prefs: read-write failed", false},
  };
  for (const auto& row : rows) {
    preferences.proxySaveErrors.clear();
    preferences.startError.reset();
    preferences.transparentProxies = {};
    row.arrange();
    run(Action::reactivate);
    complete();
    const auto retry = row.line + " — sysext/NE registration still settling, retry 2/12 in 1.5s\n";
    expect(reactivating + (row.isTransient ? retry : ""), row.isTransient ? "" : row.line + "\n",
           row.isTransient ? std::nullopt : std::optional(1));
    EXPECT_EQ(host.mainQueue.countTimers(), row.isTransient ? 1U : 0U) << row.line;
  }
  EXPECT_FALSE(host.files.exists(recordFile)) << "nothing was applied";
}

TEST_F(ControllerTest, AFailedEgressLockFailsNoCommand) {
  for (const bool loads : {true, false}) {
    const PlatformError error{"NEFilterErrorDomain", 1, "The filter is invalid."};
    host.networkPreferences.filterSaveError = error;
    if (!loads) host.networkPreferences.contentFilter = std::unexpected(error);
    run(Action::reactivate);
    complete();
    expect(
        std::string(reactivating) +
            "egress lock NOT enabled (The filter is invalid.) — direct egress to captured registries stays "
            "possible; capture itself is unaffected\n"
            "System Extension re-activated — Ostrel Guard is now on the new version.\n",
        "", 0);
  }
  EXPECT_TRUE(host.childProcesses.commands.empty()) << "the menu-bar agent is installed by activate alone";
}

TEST_F(ControllerTest, DeactivateRemovesProxiesAgentAndDaemon) {
  struct Row {
    bool extensionOnly;
    std::int32_t helperStatus;
    std::string line;
    int status;
  };
  const Row rows[] = {
      {false, 0,
       "transparent proxy + daemon removed — see the helper output above for any manual step still owed\n",
       0},
      {false, 3, "proxy removed; ostrel-agent-endpoint uninstall exited 3\n", 1},
      {true, 3,
       "system extension + proxy configuration removed — the root uninstall that dispatched this owns the "
       "rest\n",
       0},
  };
  for (const auto& row : rows) {
    host.networkPreferences.transparentProxies = {{.identifier = "a"}, {.identifier = "b"}};
    host.files.put(jobFile, "");
    host.childProcesses.commands.clear();
    helperStatus = row.helperStatus;
    run(Action::deactivate, row.extensionOnly);
    EXPECT_EQ(host.systemExtensions.requests.back().action, SystemExtensionAction::deactivation);
    complete();
    expect(deactivating + row.line, "", row.status);
    EXPECT_TRUE(host.networkPreferences.transparentProxies->empty());
    EXPECT_FALSE(host.files.exists(jobFile));
    EXPECT_EQ(launchctlCalls(), std::vector<std::string>{"bootout"});
    ASSERT_EQ(host.childProcesses.commands.size(), row.extensionOnly ? 1U : 2U);
    if (row.extensionOnly) continue;
    const auto& uninstall = host.childProcesses.commands.back();
    EXPECT_EQ(uninstall.arguments,
              (std::vector<std::string>{"uninstall", "--untrust-ca", "--removal-kind=app_deactivate"}));
    EXPECT_EQ(uninstall.output, ChildStream::inherited);
  }
}

TEST_F(ControllerTest, ARemovalContinuesAfterErrorsOfThePreferences) {
  const PlatformError error{vpnErrorDomain, 5, "read-write failed"};
  for (const bool loads : {true, false}) {
    host.networkPreferences.removeError = error;
    host.networkPreferences.transparentProxies = {{.identifier = "a"}, {.identifier = "b"}};
    if (!loads) host.networkPreferences.transparentProxies = std::unexpected(error);
    run(Action::deactivate);
    complete();
    expect(std::string(deactivating) +
               "transparent proxy + daemon removed — see the helper output above for any manual step still "
               "owed\n",
           "", 0);
    const auto line = loads ? "ostrel: could not remove a transparent proxy: read-write failed"
                            : "ostrel: could not load the transparent proxies: read-write failed";
    EXPECT_EQ(std::exchange(host.log.lines, {}), std::vector<std::string>(loads ? 2 : 1, line));
  }
}

TEST_F(ControllerTest, TheMainThreadWaitsForNoChild) {
  run(Action::deactivate);
  host.systemExtensions.delegate()->finished(SystemExtensionResult::completed);
  host.mainQueue.runAll();
  EXPECT_TRUE(host.childProcesses.commands.empty());
  EXPECT_EQ(host.backgroundQueue.countWaiting(), 1U);
  controller.reset();
  settle();
  EXPECT_EQ(host.shell.exitStatus, std::nullopt) << "a destroyed controller exits no program";
}

}  // namespace
}  // namespace ostrel
