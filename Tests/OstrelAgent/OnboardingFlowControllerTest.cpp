#include "OstrelAgent/OnboardingFlowController.hpp"

#include <gtest/gtest.h>

#include <optional>

#include "Tests/Fakes/FakeHost.hpp"
#include "Tests/Fakes/FakeLog.hpp"
#include "Tests/Fakes/FakeOnboardingWindow.hpp"
#include "Tests/Fakes/FakeUserDefaults.hpp"
#include "Tests/Fakes/FakeUserNotifications.hpp"
#include "Tests/Fakes/FakeWorkspace.hpp"

namespace ostrel {
namespace {

using enum OnboardingAction;
using Step = OnboardingChecklist::Step;

constexpr const char* certificate = R"({"ok":true,"ca_trusted":false,"ca_cert_pem":"PEM"})";
constexpr const char* isTrusted = R"({"ok":true,"ca_trusted":true})";
constexpr const char* jobFile = "/Users/robin/Library/LaunchAgents/tech.brenn.ostrel-agent.menubar.plist";

/// The flow over a host of fakes: what the status report, the daemon and the tools answer is the test's.
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
    return ChildResult{statusExit, report()};
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
    const Records records(host.files, host.clock, account);
    controller = std::make_shared<OnboardingFlowController>(
        mode,
        OnboardingFlowController::Services{
            host.mainQueue, host.backgroundQueue, host.statusQueue, host.childProcesses, host.bundle, log,
            defaults, host.networkPreferences, notifications, workspace, window, host.shell},
        OnboardingFlowController::Tools{
            helper, socket, DeviceCATrust(socket, host.files, host.childProcesses, account),
            NetworkConfigurations(host.networkPreferences, host.mainQueue, log, records),
            MenuBarAgent(host.bundle, host.files, host.childProcesses, host.standardStreams, account)});
    controller->show();
    host.mainQueue.runAll();
  }

  /// Has the daemon give these answers to the next requests.
  void answer(std::initializer_list<const char*> texts) {
    for (const auto* text : texts) {
      host.unixSockets.answers.push_back({std::string(text) + "\n"});
    }
  }

  void runAll() {
    do {
      host.backgroundQueue.runAll();
      host.statusQueue.runAll();
      host.mainQueue.runAll();
    } while (host.backgroundQueue.countWaiting() + host.statusQueue.countWaiting() > 0);
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
  FakeLog log;
  FakeUserDefaults defaults;
  FakeUserNotifications notifications{host.mainQueue};
  FakeWorkspace workspace;
  FakeOnboardingWindow window;
  UserAccount account{"/Users/robin", "/tmp", 501};
  FakeChildProcesses::Result securityResult = ChildResult{0, ""};
  FakeChildProcesses::Result activationResult = ChildResult{0, ""};
  bool wasActivated = false;
  std::int32_t statusExit = 0;
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
  EXPECT_EQ(notifications.requests, 1);
  EXPECT_EQ(defaults.get<std::int64_t>("OnboardingFlowProcessID"), 4242);

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
  EXPECT_EQ(row(Step::approval).error, "denied");
  const auto awaited = std::ranges::any_of(window.contents, [](const OnboardingContent& content) {
    return !content.rows.empty() && content.rows[0].progress == "approval required → open";
  });
  EXPECT_TRUE(awaited);

  activationResult = ChildResult{0, ""};
  extensionCode = "SYSEXT_DIVERTING";
  verdict = "protected";
  host.networkPreferences.transparentProxies = std::vector<TransparentProxyConfiguration>{{true, true}};
  press(reopenApprovalPrompt);
  EXPECT_EQ(title(), "Ostrel Agent is set up");
  press(finish);
  EXPECT_EQ(host.shell.exitStatus, 0);
  EXPECT_FALSE(defaults.value("OnboardingFlowProcessID"));
}

TEST_F(OnboardingFlowControllerTest, AnEnrolledMacGoesStraightToTheTrustOnceWhoeverFindsItFirst) {
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
    host.mainQueue.advance(OnboardingFlowController::pollPeriod);
    runAll();
    EXPECT_EQ(title(), "Finish setting up Ostrel Agent");
    EXPECT_EQ(countRuns("activate"), isJobInstalled ? 0 : 1);
    window.close();
  }
}

TEST_F(OnboardingFlowControllerTest, ATrustThatIsDismissedOrFailsSaysSoAndIsTriedAgainAsBefore) {
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
  EXPECT_EQ(countRuns("activate"), 1) << "what was to follow the first attempt follows the last";
}

TEST_F(OnboardingFlowControllerTest, InRepairATrustThatIsOwedIsAskedForUntilItIsResolved) {
  isEnrolled = true;
  isTrustPending = true;
  open(OnboardingMode::repair);
  EXPECT_EQ(title(), "Get this Mac protected again");
  runAll();
  EXPECT_EQ(title(), "Setup isn't finished");
  press(deferTrust);
  host.mainQueue.advance(OnboardingFlowController::pollPeriod);
  runAll();
  EXPECT_EQ(title(), "Get this Mac protected again");
  EXPECT_EQ(countRuns("activate"), 0);
  EXPECT_TRUE(host.unixSockets.connections.empty()) << "a repair does not ask whether the Mac is enrolled";
}

TEST_F(OnboardingFlowControllerTest, OnlyTheNewestPollIsPublished) {
  open(OnboardingMode::repair);
  host.mainQueue.advance(OnboardingFlowController::pollPeriod);
  ASSERT_EQ(host.statusQueue.countWaiting(), 2U);
  host.networkPreferences.transparentProxies = std::vector<TransparentProxyConfiguration>{{true, true}};
  host.statusQueue.runNext();
  host.mainQueue.runAll();
  EXPECT_EQ(row(Step::approval).state, ChecklistStepState::unreadable);
  host.statusQueue.runNext();
  host.mainQueue.runAll();
  EXPECT_EQ(row(Step::approval).state, ChecklistStepState::satisfied);
}

TEST_F(OnboardingFlowControllerTest, ErrorsOfSettingsAndFilterStandAtTheirRowsUntilMended) {
  open(OnboardingMode::repair);
  workspace.canOpenUrls = false;
  press(openExtensionSettings);
  EXPECT_TRUE(row(Step::approval).error.starts_with("Could not open System Settings."));
  host.networkPreferences.proxySaveErrors = {{vpnErrorDomain, 5, "denied"}};
  press(turnOnNetworkFilter);
  EXPECT_EQ(row(Step::proxy).error, "Couldn't turn the network filter on (save proxy prefs: denied).");
  EXPECT_EQ(row(Step::approval).error, "");
  press(openExtensionSettings);
  EXPECT_EQ(row(Step::approval).error, "") << "the error of another step stays";
  workspace.canOpenUrls = true;
  workspace.majorVersion = 14;
  press(openExtensionSettings);
  EXPECT_EQ(workspace.urls.back(), "x-apple.systempreferences:com.apple.preference.security?Security");
  press(turnOnNetworkFilter);
  EXPECT_EQ(row(Step::proxy).error, "");
  EXPECT_EQ(row(Step::proxy).state, ChecklistStepState::satisfied);
}

TEST_F(OnboardingFlowControllerTest, AnActivationThatCannotStartSaysWhyAndCanBeTriedAgain) {
  open(OnboardingMode::repair);
  activationResult = std::unexpected(PlatformError{posixErrorDomain, 2, "No such file or directory"});
  window.press(reopenApprovalPrompt);
  window.press(reopenApprovalPrompt);
  EXPECT_EQ(row(Step::approval).progress, "Asking macOS to approve the network extension…");
  runAll();
  EXPECT_EQ(row(Step::approval).error, "Could not start activation: No such file or directory");
  EXPECT_EQ(countRuns("activate"), 1);
  activationResult = ChildResult{3, "", " \n"};
  press(reopenApprovalPrompt);
  EXPECT_EQ(row(Step::approval).error, "Activation exited with status 3.");
}

TEST_F(OnboardingFlowControllerTest, WhatIsAnsweredAfterTheWindowClosedIsDropped) {
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
  window.press(reopenApprovalPrompt);
  window.close();
  runAll();
  EXPECT_EQ(countRuns("activate"), 1);
  EXPECT_FALSE(wasActivated) << "the child was asked to end before it was started";
}

}  // namespace
}  // namespace ostrel
