#include "OstrelAgent/OnboardingFlow.hpp"

#include <algorithm>
#include <ranges>
#include <span>

#include "OstrelAgent/Text/AsciiCase.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/Utf8.hpp"
#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel {

namespace {

using Kind = OnboardingEvent::Kind;
using Step = OnboardingChecklist::Step;
using enum ChecklistStepState;
using Texts = Copy::Onboarding;
namespace stages = onboardingstage;

constexpr std::string_view tokenPrefix = "zq_enroll_";

constexpr std::size_t anyStage = std::variant_npos;

using MakeStage = OnboardingStage (*)(const std::string& text);

constexpr MakeStage checklist = [](const std::string&) -> OnboardingStage { return stages::Checklist{}; };
constexpr MakeStage enrolling = [](const std::string&) -> OnboardingStage { return stages::Enrolling{}; };
constexpr MakeStage trusting = [](const std::string&) -> OnboardingStage { return stages::Trusting{}; };
constexpr MakeStage enterToken = [](const std::string& text) -> OnboardingStage {
  return stages::EnterToken{text};
};
constexpr MakeStage trustNeeded = [](const std::string& text) -> OnboardingStage {
  return stages::TrustNeeded{text};
};

struct Transition {
  std::size_t from;
  Kind event;
  MakeStage to;
};

constexpr std::size_t atToken = 0;
constexpr std::size_t atTrustNeeded = 1;
constexpr std::size_t atEnrolling = 2;
constexpr std::size_t atTrusting = 3;
constexpr std::size_t atChecklist = 4;

constexpr Transition transitions[] = {
    {atToken, Kind::tokenRejected, enterToken},       {atToken, Kind::enrolmentBegan, enrolling},
    {atEnrolling, Kind::enrolmentFailed, enterToken}, {anyStage, Kind::trustBegan, trusting},
    {atTrusting, Kind::trusted, checklist},           {atTrusting, Kind::trustRefused, trustNeeded},
    {atTrustNeeded, Kind::trustDeferred, checklist},  {atChecklist, Kind::trustOwed, trustNeeded},
};

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

OnboardingStage initialStage(OnboardingMode mode) {
  if (mode == OnboardingMode::repair) return stages::Checklist{};
  return stages::EnterToken{};
}

std::optional<OnboardingStage> stageAfter(const OnboardingStage& stage, const OnboardingEvent& event) {
  for (const auto& row : transitions) {
    if (row.event != event.kind || (row.from != anyStage && row.from != stage.index())) continue;
    return row.to(event.text);
  }
  return std::nullopt;
}

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

std::optional<ActivationState> activationOfProgress(std::string_view chunk) {
  std::optional<std::string_view> last;
  for (const auto piece : std::views::split(chunk, '\n')) {
    const std::string_view line(piece.begin(), piece.end());
    if (!isBlank(line)) last = line;
  }
  if (!last) return std::nullopt;
  if (containsIgnoringCase(*last, "approval required"))
    return activationstate::AwaitingApproval{std::string(*last)};
  return activationstate::Running{std::string(*last)};
}

ActivationState activationAfterExit(int status, std::string_view standardError) {
  if (status == 0) return activationstate::Idle{};
  const auto sentence = isUtf8(standardError) ? trimmed(standardError) : std::string_view();
  if (!sentence.empty()) return activationstate::Failed{std::string(sentence)};
  return activationstate::Failed{Texts::activationExited.with(status)};
}

std::expected<std::string, std::string> acceptableToken(std::string_view typed) {
  const auto token = trimmed(typed);
  if (token.starts_with(tokenPrefix) && token.size() > tokenPrefix.size()) return std::string(token);
  return std::unexpected(Texts::tokenErrorBadPrefix.with(tokenPrefix));
}

}  // namespace ostrel
