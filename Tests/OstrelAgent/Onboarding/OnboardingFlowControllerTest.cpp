#include "OstrelAgent/Onboarding/OnboardingFlowController.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <ranges>

#include "OstrelAgent/Text/Copy.hpp"
#include "Tests/Fakes/FakeHost.hpp"
#include "Tests/Fakes/FakeOnboardingWindow.hpp"
#include "Tests/Fakes/FakeWorkspace.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using enum OnboardingAction;
using Step = OnboardingChecklist::Step;

constexpr const char* certificate = R"({"ok":true,"ca_trusted":false,"ca_cert_pem":"PEM"})";
constexpr const char* isTrusted = R"({"ok":true,"ca_trusted":true})";
constexpr const char* jobFile = "/Users/robin/Library/LaunchAgents/tech.brenn.ostrel-agent.menubar.plist";

using Errors = std::vector<std::string>;
using Proxies = std::vector<TransparentProxyConfiguration>;

/// The flow over a host of fakes: the test sets the answers of helper, daemon and tools.
struct OnboardingFlowControllerTest : testing::Test {
  OnboardingFlowControllerTest() {
    host.files.putExecutable(host.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
    host.files.folders.insert("/tmp");
    host.files.put(std::string(ControlSocket::socketPath), "socket");
    host.bundle.resources["captured-hosts.json"] = R"(["registry.npmjs.org"])";
    host.childProcesses.answer = [this](const ChildCommand& command) { return run(command); };
  }

  FakeChildProcesses::Result run(const ChildCommand& command) {
    if (command.executable == "/usr/bin/security") return securityResult;
    if (command.arguments.front() == "activate") {
      wasActivated = true;
      return activationResult;
    }
    return ChildResult{statusExit, wholeReport.value_or(report())};
  }

  std::string report() const {
    return R"({"version":"1","ca_trusted":true,"token_present":true,"token_managed":false,"daemon_listening":true,)"
           R"("enrolled":)" +
           std::string(isEnrolled ? "true" : "false") + R"(,"ca_trust_pending":)" +
           (isTrustPending ? "true" : "false") + R"(,"health":{"verdict":")" + verdict +
           R"(","sysext":{"state":"ok","code":")" + extensionCode + R"("}}})";
  }

  void open(OnboardingMode mode = OnboardingMode::onboard) {
    const HelperRunner helper(host.bundle, host.files, host.childProcesses, host.standardStreams);
    const ControlSocket socket(host.unixSockets, host.files);
    const Records records(host.files, host.clock, host.userAccount);
    controller = std::make_shared<OnboardingFlowController>(
        mode,
        OnboardingFlowController::Services{host.mainQueue, host.backgroundQueue, host.childProcesses,
                                           host.bundle, host.log, host.userDefaults, host.userNotifications,
                                           workspace, window, host.shell},
        OnboardingFlowController::Collaborators{
            std::make_shared<StatusRefresher>(
                StatusRefresher::Services{host.mainQueue, host.statusQueue, host.childProcesses,
                                          host.networkPreferences, host.systemWake},
                helper, NetworkLoads::transparentProxies),
            socket, DeviceCATrust(socket, host.files, host.childProcesses, host.userAccount),
            NetworkConfigurations(host.networkPreferences, host.mainQueue, host.log, records),
            MenuBarAgent(host.bundle, host.files, host.childProcesses, host.standardStreams,
                         host.userAccount)});
    controller->show();
    host.mainQueue.runAll();
  }

  /// Has the daemon give these answers to the next requests.
  void answer(std::initializer_list<const char*> texts) {
    for (const auto* text : texts) host.unixSockets.answers.push_back({std::string(text) + "\n"});
  }

  void runAll() {
    do {
      host.backgroundQueue.runAll();
      host.statusQueue.runAll();
      host.mainQueue.runAll();
    } while (host.backgroundQueue.countWaiting() + host.statusQueue.countWaiting() > 0);
  }

  void poll() {
    host.mainQueue.advance(OnboardingFlowController::pollPeriod);
    runAll();
  }

  void press(OnboardingAction action) {
    window.press(action);
    runAll();
  }

  const OnboardingContent::Row& row(Step step) const {
    return window.shown().rows.at(static_cast<std::size_t>(step));
  }

  std::string title() const { return window.shown().header.title; }

  std::ptrdiff_t countRuns(std::string_view argument) const {
    return std::ranges::count_if(host.childProcesses.commands, [&](const ChildCommand& command) {
      return !command.arguments.empty() && command.arguments.front() == argument;
    });
  }

  FakeHost host;
  FakeWorkspace workspace;
  FakeOnboardingWindow window;
  FakeChildProcesses::Result securityResult = ChildResult{0, ""};
  FakeChildProcesses::Result activationResult = ChildResult{0, ""};
  bool wasActivated = false;
  std::int32_t statusExit = 0;
  std::optional<std::string> wholeReport;  ///< in place of the one that the rest makes
  bool isEnrolled = false;
  bool isTrustPending = false;
  std::string verdict;
  std::string extensionCode;
  std::shared_ptr<OnboardingFlowController> controller;
};

TEST_F(OnboardingFlowControllerTest, LeadsFromATokenToAnActivationThatAsksForApproval) {
  answer({R"({"ok":true,"enrolled":false})"});
  open();
  runAll();
  EXPECT_EQ(title(), "Set up Ostrel Agent");
  EXPECT_EQ(host.userNotifications.requests, 1);
  EXPECT_EQ(host.userDefaults.get<std::int64_t>("OnboardingFlowProcessID"), 4242);

  window.typed = "wrong";
  press(enrol);
  EXPECT_TRUE(window.shown().tokenField->error.starts_with("Enrollment tokens start with zq_enroll_."));
  window.typed = " zq_enroll_x\n";
  answer({R"({"ok":false,"error":"The token is used up.","reason":"used"})"});
  press(enrol);
  EXPECT_EQ(window.shown().tokenField->error, "The token is used up.");
  EXPECT_EQ(window.typed, " zq_enroll_x\n");
  EXPECT_EQ(host.unixSockets.connections.back().writes.at(0),
            "{\"action\":\"enroll\",\"enrollment_token\":\"zq_enroll_x\"}\n");

  answer({R"({"ok":true})", certificate, isTrusted});
  activationResult = ChildResult{1, "==> activating\napproval required → open\n", " denied \n"};
  press(enrol);
  EXPECT_EQ(window.typed, "");
  EXPECT_EQ(title(), "Finish setting up Ostrel Agent");
  EXPECT_EQ(row(Step::approval).errors, Errors{"denied"});
  EXPECT_TRUE(std::ranges::any_of(window.contents, [](const OnboardingContent& content) {
    return !content.rows.empty() && content.rows[0].progress == "approval required → open";
  }));

  activationResult = ChildResult{0, ""};
  extensionCode = "SYSEXT_DIVERTING";
  verdict = "protected";
  host.networkPreferences.transparentProxies = Proxies{{true, true}};
  press(reopenApprovalPrompt);
  EXPECT_EQ(title(), "Ostrel Agent is set up");
  press(finish);
  EXPECT_EQ(host.shell.exitStatus, 0);
  EXPECT_FALSE(host.userDefaults.value("OnboardingFlowProcessID"));
}

TEST_F(OnboardingFlowControllerTest, AnEnrolledMacAsksForTrustOnceWhicheverPollFindsIt) {
  for (const bool isJobInstalled : {false, true}) {
    if (isJobInstalled) host.files.put(jobFile, "job");
    host.childProcesses.commands.clear();
    isEnrolled = true;
    answer({R"({"ok":true,"enrolled":true})", isTrusted});
    open();
    // The start-up question and the first poll both find the Mac enrolled, and a later poll does, too.
    host.backgroundQueue.runNext();
    host.statusQueue.runAll();
    host.mainQueue.runAll();
    EXPECT_EQ(host.backgroundQueue.countWaiting(), 1U);
    runAll();
    poll();
    EXPECT_EQ(title(), "Finish setting up Ostrel Agent");
    EXPECT_EQ(countRuns("activate"), isJobInstalled ? 0 : 1);
    window.close();
  }
}

TEST_F(OnboardingFlowControllerTest, ADismissedOrFailedTrustIsShownAndCanBeRetried) {
  answer({R"({"ok":true,"enrolled":true})", certificate});
  securityResult = ChildResult{1, "", "The authorization was canceled by the user."};
  open();
  runAll();
  EXPECT_EQ(window.shown().paragraphs.back(),
            "Setup can't finish until an administrator allows it. Click Trust certificate to try again.");
  answer({certificate});
  securityResult = ChildResult{9, "", ""};
  press(retryTrust);
  EXPECT_EQ(window.shown().paragraphs.back(),
            "macOS refused to trust the device certificate (security exited 9).");
  answer({isTrusted});
  press(retryTrust);
  EXPECT_EQ(countRuns("activate"), 1) << "the activation follows the last attempt";
}

TEST_F(OnboardingFlowControllerTest, ARepairAsksForAnOwedTrustUntilItIsResolved) {
  isEnrolled = true;
  isTrustPending = true;
  open(OnboardingMode::repair);
  EXPECT_EQ(title(), "Get this Mac protected again");
  runAll();
  EXPECT_EQ(title(), "Setup isn't finished");
  EXPECT_EQ(window.shown().paragraphs, Errors{std::string(Copy::Onboarding::trustNeededOwedInRepair.text())});
  press(deferTrust);
  poll();
  EXPECT_EQ(title(), "Get this Mac protected again");
  EXPECT_EQ(countRuns("activate"), 0);
  EXPECT_TRUE(host.unixSockets.connections.empty()) << "a repair does not ask whether the Mac is enrolled";
}

TEST_F(OnboardingFlowControllerTest, ASlowHelperIsShownAtEveryPoll) {
  host.networkPreferences.transparentProxies = Proxies{{true, true}};
  open(OnboardingMode::repair);
  host.mainQueue.advance(OnboardingFlowController::pollPeriod);
  ASSERT_EQ(host.statusQueue.countWaiting(), 2U) << "the next poll has begun before the first ends";
  EXPECT_EQ(row(Step::approval).state, ChecklistStepState::unreadable);
  host.statusQueue.runNext();
  host.mainQueue.runAll();
  EXPECT_EQ(row(Step::approval).state, ChecklistStepState::satisfied);
}

TEST_F(OnboardingFlowControllerTest, ErrorsOfSettingsAndFilterShowAtTheirRowsUntilFixed) {
  open(OnboardingMode::repair);
  workspace.canOpenUrls = false;
  press(openExtensionSettings);
  EXPECT_TRUE(row(Step::approval).errors.at(0).starts_with("Could not open System Settings."));
  EXPECT_EQ(workspace.urls.back(), "x-apple.systempreferences:com.apple.LoginItems-Settings.extension");
  host.networkPreferences.proxySaveErrors = {{vpnErrorDomain, 5, "denied"}};
  press(turnOnNetworkFilter);
  EXPECT_EQ(row(Step::proxy).errors,
            Errors{"Couldn't turn the network filter on (save proxy prefs: denied)."});
  EXPECT_EQ(row(Step::approval).errors, Errors());
  press(openExtensionSettings);
  EXPECT_EQ(row(Step::approval).errors, Errors()) << "the error of another step stays";
  workspace.canOpenUrls = true;
  workspace.majorVersion = 14;
  press(openExtensionSettings);
  EXPECT_EQ(workspace.urls.back(), "x-apple.systempreferences:com.apple.preference.security?Security");
  press(turnOnNetworkFilter);
  EXPECT_EQ(row(Step::proxy).errors, Errors());
  EXPECT_EQ(row(Step::proxy).state, ChecklistStepState::satisfied);
}

TEST_F(OnboardingFlowControllerTest, AnActivationThatCannotStartShowsWhyAndCanBeRetried) {
  open(OnboardingMode::repair);
  activationResult = std::unexpected(PlatformError{posixErrorDomain, 2, "No such file or directory"});
  window.press(reopenApprovalPrompt);
  window.press(reopenApprovalPrompt);
  EXPECT_EQ(row(Step::approval).progress, "Asking macOS to approve the network extension…");
  runAll();
  EXPECT_EQ(row(Step::approval).errors, Errors{"Could not start activation: No such file or directory"});
  EXPECT_EQ(countRuns("activate"), 1);
  activationResult = ChildResult{3, "", " \n"};
  press(reopenApprovalPrompt);
  EXPECT_EQ(row(Step::approval).errors, Errors{"Activation exited with status 3."});
}

TEST_F(OnboardingFlowControllerTest, AnswersAfterTheWindowClosedAreDropped) {
  answer({R"({"ok":true,"enrolled":false})", R"({"ok":true})"});
  open();
  runAll();
  window.typed = "zq_enroll_x";
  window.press(enrol);
  window.close();
  EXPECT_EQ(host.shell.terminations, 1);
  runAll();
  EXPECT_EQ(host.mainQueue.countTimers(), 0U);
  EXPECT_EQ(countRuns("activate"), 0);
  EXPECT_TRUE(host.unixSockets.answers.empty());
}

TEST_F(OnboardingFlowControllerTest, ClosingEndsAnActivationThatRuns) {
  open(OnboardingMode::repair);
  bool wasEnded = false;
  host.childProcesses.whileRunning = [&](const ChildCommand& command, const ChildStopTokens& ending,
                                         const auto&) {
    if (command.arguments.front() != "activate") return;
    window.press(finish);
    window.press(finish);
    wasEnded = ending.terminate.stop_requested();
  };
  press(reopenApprovalPrompt);
  EXPECT_TRUE(wasEnded);
  EXPECT_EQ(host.shell.terminations, 1);
}

TEST_F(OnboardingFlowControllerTest, UnreadableInputsMakeTheirRowsUnreadable) {
  using enum ChecklistStepState;
  constexpr const char* withoutHealth =
      R"({"version":"1","ca_trusted":true,"token_present":true,"token_managed":false,"daemon_listening":true})";
  struct Row {
    std::int32_t statusExit;
    std::optional<std::string> report;
    NetworkPreferences::TransparentProxies proxies;
    ChecklistStepState approval, proxy, installs;
  };
  const PlatformError loadError{vpnErrorDomain, 5, "denied"};
  const Row rows[] = {
      {0, {}, Proxies{{true, true}}, satisfied, satisfied, satisfied},
      {1, {}, Proxies{{true, false}}, unreadable, satisfied, unreadable},
      {0, "no report", Proxies{}, unreadable, pending, unreadable},
      {0, withoutHealth, Proxies{{false, true}}, satisfied, pending, unreadable},
      {0, {}, std::unexpected(loadError), satisfied, unreadable, satisfied},
      {0, withoutHealth, std::unexpected(TransparentProxiesError(loadError, {{true, true}})), satisfied,
       unreadable, unreadable},
  };
  extensionCode = "SYSEXT_DIVERTING";
  open(OnboardingMode::repair);
  for (const auto& each : rows) {
    SCOPED_TRACE(&each - rows);
    statusExit = each.statusExit;
    wholeReport = each.report;
    host.networkPreferences.transparentProxies = each.proxies;
    poll();
    EXPECT_EQ(row(Step::approval).state, each.approval);
    EXPECT_EQ(row(Step::proxy).state, each.proxy);
    EXPECT_EQ(row(Step::diverting).state, each.installs);
  }
}

TEST_F(OnboardingFlowControllerTest, AHangingHelperDoesNotLeaveAnOldSuccessShown) {
  extensionCode = "SYSEXT_DIVERTING";
  verdict = "protected";
  host.networkPreferences.transparentProxies = Proxies{{true, true}};
  open(OnboardingMode::repair);
  runAll();
  EXPECT_EQ(title(), "This Mac is protected again");
  host.networkPreferences.transparentProxies = std::unexpected(PlatformError{vpnErrorDomain, 5, "denied"});
  host.mainQueue.advance(OnboardingFlowController::pollPeriod + 15s);
  EXPECT_EQ(title(), "Get this Mac protected again");
}

TEST_F(OnboardingFlowControllerTest, AMissingDaemonIsReportedAtEachStage) {
  const auto enrolError = [this] {
    press(enrol);
    return window.shown().tokenField->error;
  };
  answer({R"({"ok":true,"enrolled":false})"});
  open();
  runAll();
  window.typed = "zq_enroll_x";
  host.unixSockets.connectError = ErrorNumber{EACCES};
  EXPECT_TRUE(enrolError().contains("enrol this device"));
  host.unixSockets.connectError = ErrorNumber{ENOENT};
  host.files.files.erase(std::string(ControlSocket::socketPath));
  const auto missing = enrolError();
  EXPECT_TRUE(missing.contains("isn't installed on this Mac yet")) << missing;
  host.files.put(std::string(ControlSocket::socketPath), "socket");
  host.unixSockets.connectError.reset();
  host.unixSockets.answers.push_back({});
  const auto closed = enrolError();
  EXPECT_FALSE(closed.empty());
  EXPECT_NE(closed, missing);
  window.typed = "zq_enroll_\xFF";
  host.unixSockets.answers.push_back({});
  EXPECT_TRUE(enrolError().starts_with("Enrollment failed: "));

  window.typed = "zq_enroll_x";
  host.unixSockets.answers.clear();
  answer({R"({"ok":true})"});
  host.unixSockets.answers.push_back({});
  press(enrol);
  EXPECT_EQ(title(), "Setup isn't finished") << "the daemon closes before the certificate";
  answer({certificate});
  host.unixSockets.answers.push_back({});
  press(retryTrust);
  EXPECT_EQ(title(), "Setup isn't finished")
      << "the daemon closes before it says whether the certificate is trusted";
  EXPECT_EQ(countRuns("activate"), 0);
}

TEST_F(OnboardingFlowControllerTest, ATokenIsSentToTheDaemonWholeAndOnce) {
  for (const auto& typed : {"zq_enroll_" + std::string(65536, 'x'), std::string(" zq_enroll_a\nb\n")}) {
    host.unixSockets.connections.clear();
    answer({R"({"ok":true,"enrolled":false})"});
    open();
    runAll();
    window.typed = typed;
    answer({R"({"ok":false,"error":"no"})"});
    window.press(enrol);
    press(enrol);
    ASSERT_EQ(host.unixSockets.connections.size(), 2U);
    const auto& sent = host.unixSockets.connections.back().writes.at(0);
    EXPECT_EQ(std::ranges::count(sent, '\n'), 1);
    EXPECT_TRUE(sent.ends_with(typed.starts_with(' ') ? "zq_enroll_a\\nb\"}\n" : typed + "\"}\n"));
    window.close();
  }
}

TEST_F(OnboardingFlowControllerTest, TheProgressOfAnActivationIsItsLatestOutput) {
  open(OnboardingMode::repair);
  Errors progress;
  host.childProcesses.whileRunning = [&](const ChildCommand& command, const auto&,
                                         const ChildOutput& received) {
    if (command.arguments.front() != "activate") return;
    for (const char* piece : {"==> appro", "val required\n", "\xFF\n", " \n", "Approval Required\n"}) {
      received(piece);
      host.mainQueue.runAll();
      progress.push_back(row(Step::approval).progress);
    }
    extensionCode = "SYSEXT_IDLE";
    host.mainQueue.advance(OnboardingFlowController::pollPeriod);
    host.statusQueue.runAll();
    host.mainQueue.runAll();
    EXPECT_EQ(row(Step::approval).state, ChecklistStepState::satisfied);
    EXPECT_EQ(row(Step::approval).progress, "Approval Required") << "polls do not change a run in progress";
    extensionCode = "";
  };
  activationResult = ChildResult{9, "", ""};
  press(reopenApprovalPrompt);
  EXPECT_EQ(progress,
            (Errors{"==> appro", "val required", "val required", "val required", "Approval Required"}));
  EXPECT_EQ(row(Step::approval).errors, Errors{"Activation exited with status 9."});
  extensionCode = "SYSEXT_IDLE";
  poll();
  EXPECT_EQ(row(Step::approval).errors, Errors());
  extensionCode = "";
  poll();
  EXPECT_EQ(row(Step::approval).errors, Errors()) << "a resolved error does not return";
  host.bundle.executable = "";
  press(reopenApprovalPrompt);
  EXPECT_EQ(row(Step::approval).errors, Errors{"Could not locate the Ostrel Agent app executable."});
}

TEST_F(OnboardingFlowControllerTest, EachFailureOfTheFilterNamesItsStage) {
  auto& preferences = host.networkPreferences;
  const PlatformError denied{vpnErrorDomain, 5, "denied"};
  const std::pair<std::function<void()>, const char*> rows[] = {
      {[&] { preferences.transparentProxies = std::unexpected(denied); }, "load proxy prefs: denied"},
      {[&] { preferences.transparentProxies = Proxies(), preferences.startError = denied; },
       "start proxy: denied"},
      {[&] { preferences.transparentProxies = Proxies(), host.bundle.resources.clear(); },
       "captured-hosts.json"},
  };
  open(OnboardingMode::repair);
  for (const auto& [arrange, words] : rows) {
    arrange();
    poll();
    const auto first = window.contents.size();
    press(turnOnNetworkFilter);
    const auto isShown = std::ranges::any_of(
        window.contents | std::views::drop(first), [text = words](const OnboardingContent& content) {
          const auto& errors = content.rows.at(1).errors;
          return !errors.empty() && errors[0].starts_with("Couldn't turn the network filter on (") &&
                 errors[0].contains(text);
        });
    EXPECT_TRUE(isShown) << words;
  }
}

TEST_F(OnboardingFlowControllerTest, ASecondPressStartsNothingTwice) {
  open(OnboardingMode::repair);
  runAll();
  host.networkPreferences.isDeferred = true;
  host.networkPreferences.transparentProxies = Proxies();
  window.press(turnOnNetworkFilter);
  window.press(turnOnNetworkFilter);
  while (host.networkPreferences.countDeferred() > 0) {
    host.networkPreferences.completeNext();
    host.mainQueue.runAll();
  }
  EXPECT_EQ(host.networkPreferences.transparentProxies->size(), 1U);
  host.networkPreferences.isDeferred = false;
  isEnrolled = isTrustPending = true;
  poll();
  window.press(retryTrust);
  EXPECT_TRUE(window.shown().allButtons().empty()) << "a trust that runs is not started again";
}

TEST_F(OnboardingFlowControllerTest, TheChecklistOfOnboardingStaysThoughTrustIsOwed) {
  isEnrolled = isTrustPending = true;
  answer({R"({"ok":true,"enrolled":true})", isTrusted});
  open();
  runAll();
  poll();
  EXPECT_EQ(title(), "Finish setting up Ostrel Agent");
  EXPECT_EQ(host.shell.activations, 1);
}

TEST_F(OnboardingFlowControllerTest, AsksForNotificationsUnlessThatIsDecided) {
  for (const auto decided : {NotificationAuthorization::denied, NotificationAuthorization::authorized}) {
    host.userNotifications.authorization = decided;
    open(OnboardingMode::repair);
    EXPECT_EQ(host.userNotifications.requests, 0);
  }
  host.userNotifications.authorization = NotificationAuthorization::notDetermined;
  host.userNotifications.requestResult = std::unexpected(PlatformError{"UNErrorDomain", 1, "not allowed"});
  open(OnboardingMode::repair);
  EXPECT_EQ(host.log.lines, Errors{"ostrel: notification authorization request failed: not allowed"});
}

}  // namespace
}  // namespace ostrel
