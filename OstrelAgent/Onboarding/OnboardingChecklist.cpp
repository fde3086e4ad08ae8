#include "OstrelAgent/Onboarding/OnboardingChecklist.hpp"

#include <algorithm>
#include <span>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

using Step = OnboardingChecklist::Step;
using enum ChecklistStepState;
using Texts = Copy::Onboarding;

/// The codes that prove the approval even when no proxy is connected.
constexpr std::string_view approvedCodes[] = {
    "SYSEXT_DIVERTING",          "SYSEXT_IDLE",        "SYSEXT_PROXY_DISABLED",
    "SYSEXT_REACTIVATE_PENDING", "SYSEXT_LAGS_DAEMON", "SYSEXT_PREDATES_DAEMON",
};
constexpr std::string_view divertingCodes[] = {"SYSEXT_DIVERTING", "SYSEXT_IDLE", "SYSEXT_LAGS_DAEMON"};

bool isAmong(std::span<const std::string_view> codes, std::string_view code) {
  return std::ranges::find(codes, code) != codes.end();
}

bool isStateKnown(const SetupObservation& observation) {
  return !observation.sysextState.empty() && observation.sysextState != "unknown";
}

ChecklistStepState approvalState(const SetupObservation& observation) {
  if (observation.sysextActive) return satisfied;
  if (isAmong(approvedCodes, observation.sysextCode)) return satisfied;
  if (!observation.statusRead) return unreadable;
  return isStateKnown(observation) ? pending : unreadable;
}

ChecklistStepState proxyState(const SetupObservation& observation) {
  if (observation.transparentProxyEnabled) return *observation.transparentProxyEnabled ? satisfied : pending;
  return observation.sysextCode == "SYSEXT_PROXY_DISABLED" ? pending : unreadable;
}

ChecklistStepState divertingState(const SetupObservation& observation) {
  if (!observation.statusRead) return unreadable;
  if (!observation.daemonListening) return pending;
  if (isAmong(divertingCodes, observation.sysextCode)) return satisfied;
  return isStateKnown(observation) ? pending : unreadable;
}

struct StepRow {
  Step step;
  ChecklistStepState (*state)(const SetupObservation&);
  Message title;
  Message satisfiedNote;
  Message pendingNote;
  Message unreadableNote;
};

constexpr StepRow stepRows[] = {
    {Step::approval, approvalState, Texts::stepApprovalTitle, Texts::stepApprovalSatisfied,
     Texts::stepApprovalPending, Texts::stepApprovalUnreadable},
    {Step::proxy, proxyState, Texts::stepProxyTitle, Texts::stepProxySatisfied, Texts::stepProxyPending,
     Texts::stepProxyUnreadable},
    {Step::diverting, divertingState, Texts::stepDivertingTitle, Texts::stepDivertingSatisfied,
     Texts::stepDivertingPending, Texts::stepDivertingUnreadable},
};

const StepRow& rowOf(Step step) { return *std::ranges::find(stepRows, step, &StepRow::step); }

}  // namespace

ChecklistStepState OnboardingChecklist::state(Step step, const SetupObservation& observation) {
  return rowOf(step).state(observation);
}

OnboardingChecklist::Steps OnboardingChecklist::steps(const SetupObservation& observation) {
  Steps steps;
  std::ranges::transform(stepRows, steps.begin(),
                         [&](const StepRow& row) { return std::pair(row.step, row.state(observation)); });
  return steps;
}

SetupOutcome OnboardingChecklist::outcome(const SetupObservation& observation) {
  const auto isSatisfied = [](const auto& step) { return step.second == satisfied; };
  if (!std::ranges::all_of(steps(observation), isSatisfied)) return SetupOutcome::unfinished;
  if (observation.verdict == "protected") return SetupOutcome::isProtected;
  if (observation.verdict.empty()) return SetupOutcome::verdictUnreported;
  return SetupOutcome::stepsDoneNotProtected;
}

std::string_view OnboardingChecklist::title(Step step) { return rowOf(step).title.text(); }

std::string_view OnboardingChecklist::note(Step step, ChecklistStepState state) {
  const auto& row = rowOf(step);
  if (state == satisfied) return row.satisfiedNote.text();
  return state == pending ? row.pendingNote.text() : row.unreadableNote.text();
}

}  // namespace ostrel
