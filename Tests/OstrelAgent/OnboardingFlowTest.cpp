#include "OstrelAgent/OnboardingFlow.hpp"

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

TEST(OnboardingFlow, AnEventMovesOnlyTheStageThatItConcerns) {
  const OnboardingStage all[] = {stages::EnterToken{"old"}, stages::TrustNeeded{"old"}, stages::Enrolling{},
                                 stages::Trusting{}, stages::Checklist{}};
  struct Row {
    Kind event;
    std::vector<std::size_t> from;
    OnboardingStage to;
  };
  const Row rows[] = {
      {Kind::tokenRejected, {0}, stages::EnterToken{"new"}},
      {Kind::enrolmentBegan, {0}, stages::Enrolling{}},
      {Kind::enrolmentFailed, {2}, stages::EnterToken{"new"}},
      {Kind::trustBegan, {0, 1, 2, 3, 4}, stages::Trusting{}},
      {Kind::trusted, {3}, stages::Checklist{}},
      {Kind::trustRefused, {3}, stages::TrustNeeded{"new"}},
      {Kind::trustDeferred, {1}, stages::Checklist{}},
      {Kind::trustOwed, {4}, stages::TrustNeeded{"new"}},
  };
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < std::size(all); ++i) {
      SCOPED_TRACE(testing::Message() << static_cast<int>(row.event) << " at " << i);
      const auto after = stageAfter(all[i], {row.event, "new"});
      const bool isConcerned = std::ranges::count(row.from, i) > 0;
      EXPECT_EQ(after, isConcerned ? std::optional(row.to) : std::nullopt);
    }
  }
  EXPECT_EQ(initialStage(OnboardingMode::onboard), OnboardingStage(stages::EnterToken{}));
  EXPECT_EQ(initialStage(OnboardingMode::repair), OnboardingStage(stages::Checklist{}));
}

TEST(OnboardingFlow, ReadsTheStepsInTheOrderOfItsRules) {
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

TEST(OnboardingFlow, GathersAnObservationOfAReport) {
  const auto report = StatusReport::decode(fullReportText());
  ASSERT_TRUE(report);
  SetupObservation observation;
  observation.addReport(*report);
  EXPECT_EQ(observation, (SetupObservation{true, true, true, true, false, "ok", "C", {}, "protected"}));
}

TEST(OnboardingFlow, TellsProgressByTheLastLineThatSaysSomething) {
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

TEST(OnboardingFlow, TellsAFailedActivationByItsOwnWordsElseByItsStatus) {
  using namespace activationstate;
  EXPECT_EQ(activationAfterExit(0, "noise"), ActivationState(Idle{}));
  EXPECT_EQ(activationAfterExit(1, "  broken \n"), ActivationState(Failed{"broken"}));
  EXPECT_EQ(activationAfterExit(1, " \n"), ActivationState(Failed{"Activation exited with status 1."}));
  EXPECT_EQ(activationAfterExit(9, "\xFF"), ActivationState(Failed{"Activation exited with status 9."}));
}

TEST(OnboardingFlow, TakesATokenByItsPrefixAndTrimsIt) {
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
