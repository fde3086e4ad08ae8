#include "OstrelAgent/Onboarding/OnboardingFlow.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

using Kind = OnboardingEvent::Kind;
using Step = OnboardingChecklist::Step;
using enum ChecklistStepState;
namespace stages = onboardingstage;

SetupObservation diverting() {
  return {.statusRead = true,
          .enrolled = true,
          .caTrustPending = false,
          .daemonListening = true,
          .sysextActive = true,
          .sysextState = "ok",
          .sysextCode = "SYSEXT_DIVERTING",
          .transparentProxyEnabled = true,
          .verdict = "protected"};
}

TEST(OnboardingFlow, AnEventOfAnotherStageChangesNothing) {
  const std::pair<OnboardingStage, Kind> rows[] = {
      {stages::Enrolling{}, Kind::tokenRejected},      {stages::Checklist{}, Kind::tokenRejected},
      {stages::Trusting{}, Kind::enrolmentFailed},     {stages::Checklist{}, Kind::enrolmentFailed},
      {stages::Trusting{}, Kind::trustDeferred},       {stages::EnterToken{}, Kind::trustDeferred},
      {stages::Trusting{}, Kind::trustOwed},           {stages::TrustNeeded{"old"}, Kind::trustOwed},
      {stages::EnterToken{"old"}, Kind::trustOwed},    {stages::Checklist{}, Kind::trustRefused},
      {stages::EnterToken{"old"}, Kind::trustRefused}, {stages::Enrolling{}, Kind::enrolmentBegan},
  };
  for (const auto& [stage, event] : rows) {
    EXPECT_EQ(stageAfter(stage, {event, "new"}), std::nullopt)
        << stage.index() << " by " << static_cast<int>(event);
  }
  EXPECT_EQ(initialStage(OnboardingMode::onboard), OnboardingStage(stages::EnterToken{}));
  EXPECT_EQ(initialStage(OnboardingMode::repair), OnboardingStage(stages::Checklist{}));
}

TEST(OnboardingFlow, CodesProveApprovalAndSomeOfThemInspection) {
  const std::pair<const char*, ChecklistStepState> rows[] = {
      {"SYSEXT_DIVERTING", satisfied},        {"SYSEXT_IDLE", satisfied},
      {"SYSEXT_LAGS_DAEMON", satisfied},      {"SYSEXT_PROXY_DISABLED", pending},
      {"SYSEXT_REACTIVATE_PENDING", pending}, {"SYSEXT_PREDATES_DAEMON", pending},
  };
  for (const auto& [code, installs] : rows) {
    auto observation = diverting();
    observation.sysextActive = false;
    observation.sysextCode = code;
    EXPECT_EQ(OnboardingChecklist::state(Step::approval, observation), satisfied) << code;
    EXPECT_EQ(OnboardingChecklist::state(Step::diverting, observation), installs) << code;
  }
}

TEST(OnboardingFlow, TheStateOfAStepIsDecidedInTheOrderOfItsRules) {
  const auto with = [](auto change) {
    auto observation = diverting();
    change(observation);
    return observation;
  };
  struct Row {
    SetupObservation observation;
    ChecklistStepState approval;
    ChecklistStepState proxy;
    ChecklistStepState installs;
  };
  const Row rows[] = {
      {SetupObservation(), unreadable, unreadable, unreadable},
      {diverting(), satisfied, satisfied, satisfied},
      {with([](auto& o) { o.statusRead = false, o.sysextCode = "", o.sysextState = ""; }), satisfied,
       satisfied, unreadable},
      {with([](auto& o) { o.sysextActive = false, o.sysextCode = "SYSEXT_REACTIVATE_PENDING"; }), satisfied,
       satisfied, pending},
      {with([](auto& o) { o.sysextActive = false, o.sysextCode = "OTHER", o.sysextState = "unknown"; }),
       unreadable, satisfied, unreadable},
      {with([](auto& o) { o.sysextActive = false, o.sysextCode = "OTHER"; }), pending, satisfied, pending},
      {with([](auto& o) { o.sysextActive = false, o.sysextCode = "OTHER", o.statusRead = false; }),
       unreadable, satisfied, unreadable},
      {with([](auto& o) { o.daemonListening = false; }), satisfied, satisfied, pending},
      {with([](auto& o) { o.transparentProxyEnabled = false, o.sysextCode = "SYSEXT_PROXY_DISABLED"; }),
       satisfied, pending, pending},
      {with([](auto& o) { o.transparentProxyEnabled.reset(), o.sysextCode = "SYSEXT_PROXY_DISABLED"; }),
       satisfied, pending, pending},
      {with([](auto& o) { o.transparentProxyEnabled.reset(); }), satisfied, unreadable, satisfied},
  };
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    SCOPED_TRACE(i);
    const OnboardingChecklist::Steps expected = {{{Step::approval, rows[i].approval},
                                                  {Step::proxy, rows[i].proxy},
                                                  {Step::diverting, rows[i].installs}}};
    EXPECT_EQ(OnboardingChecklist::steps(rows[i].observation), expected);
  }
}

TEST(OnboardingFlow, TheVerdictCountsOnceAllStepsAreSatisfied) {
  const std::pair<std::string, SetupOutcome> rows[] = {
      {"protected", SetupOutcome::isProtected},
      {"", SetupOutcome::verdictUnreported},
      {"degraded", SetupOutcome::stepsDoneNotProtected},
      {"Protected", SetupOutcome::stepsDoneNotProtected},
  };
  for (const auto& [verdict, outcome] : rows) {
    auto observation = diverting();
    observation.verdict = verdict;
    EXPECT_EQ(OnboardingChecklist::outcome(observation), outcome) << verdict;
    observation.transparentProxyEnabled = false;
    EXPECT_EQ(OnboardingChecklist::outcome(observation), SetupOutcome::unfinished) << verdict;
  }
}

TEST(OnboardingFlow, ProgressIsTheLastLineThatIsNotBlank) {
  using namespace activationstate;
  const std::pair<std::string_view, std::optional<ActivationState>> rows[] = {
      {"", std::nullopt},
      {"\n \t\n\u00A0\n", std::nullopt},
      {"==> activating\n", Running{"==> activating"}},
      {"first\n  second \n\n", Running{"  second "}},
      {"Waiting: Approval Required", AwaitingApproval{"Waiting: Approval Required"}},
      {"approval required → open\nsaved", Running{"saved"}},
  };
  for (const auto& [chunk, state] : rows) EXPECT_EQ(activationOfProgress(chunk), state) << chunk;
}

TEST(OnboardingFlow, AFailedActivationShowsItsErrorOrItsStatus) {
  using namespace activationstate;
  EXPECT_EQ(activationAfterExit(0, "noise"), ActivationState(Idle{}));
  EXPECT_EQ(activationAfterExit(1, "  broken \n"), ActivationState(Failed{"broken"}));
  EXPECT_EQ(activationAfterExit(1, " \n"), ActivationState(Failed{"Activation exited with status 1."}));
  EXPECT_EQ(activationAfterExit(9, "\xFF"), ActivationState(Failed{"Activation exited with status 9."}));
}

TEST(OnboardingFlow, ATokenIsAcceptedByItsPrefixAndTrimmed) {
  EXPECT_EQ(acceptableToken("  zq_enroll_x\n"), "zq_enroll_x");
  EXPECT_EQ(acceptableToken("zq_enroll_a\nb"), "zq_enroll_a\nb");
  for (const char* typed :
       {"", "zq_enroll_", " zq_enroll_ \n", "ZQ_ENROLL_x", "zq_enro11_x", "x zq_enroll_x"}) {
    const auto token = acceptableToken(typed);
    ASSERT_FALSE(token) << typed;
    EXPECT_EQ(token.error(),
              "Enrollment tokens start with zq_enroll_. Paste the token exactly as you received it.");
  }
}

}  // namespace
}  // namespace ostrel
