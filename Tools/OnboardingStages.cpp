#include "Tools/OnboardingStages.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "OstrelAgent/Onboarding/OnboardingFlow.hpp"
#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

using Step = OnboardingChecklist::Step;
using Texts = Copy::Onboarding;
namespace stages = onboardingstage;

OnboardingFlowModel modelAt(OnboardingStage stage, OnboardingMode mode = OnboardingMode::onboard) {
  OnboardingFlowModel model(mode);
  model.stage = std::move(stage);
  return model;
}

/// A Mac with readable helper output and network preferences.
SetupObservation observed(std::string state, std::string code, bool filterIsOn) {
  SetupObservation observation;
  observation.statusRead = observation.enrolled = observation.daemonListening = true;
  observation.sysextState = std::move(state);
  observation.sysextCode = std::move(code);
  observation.transparentProxyEnabled = filterIsOn;
  return observation;
}

OnboardingFlowModel checklist(SetupObservation observation, OnboardingMode mode = OnboardingMode::onboard) {
  auto model = modelAt(stages::Checklist{}, mode);
  model.observation = std::move(observation);
  return model;
}

OnboardingFlowModel unapproved(ActivationState activation = {}) {
  auto model = checklist(observed("broken", "SYSEXT_AWAITING_APPROVAL", false));
  model.activation = std::move(activation);
  return model;
}

OnboardingFlowModel filterFailed() {
  auto model = checklist(observed("degraded", "SYSEXT_PROXY_DISABLED", false));
  model.actionError = {Step::proxy, Texts::errorFilterOn.with("save proxy prefs: permission denied")};
  return model;
}

OnboardingFlowModel done(std::string verdict, OnboardingMode mode = OnboardingMode::onboard) {
  auto observation = observed("ok", "SYSEXT_DIVERTING", true);
  observation.verdict = std::move(verdict);
  return checklist(std::move(observation), mode);
}

std::string text(const Message& message) { return std::string(message.text()); }

std::string rejection() {
  const auto token = acceptableToken("ostrel");
  return token ? std::string() : token.error();
}

struct StageRow {
  std::string_view name;
  OnboardingFlowModel (*model)();
  bool isActivating = false;
};

constexpr StageRow rows[] = {
    {"enter-token", [] { return modelAt(stages::EnterToken{}); }},
    {"token-error", [] { return modelAt(stages::EnterToken{rejection()}); }},
    {"enrolling", [] { return modelAt(stages::Enrolling{}); }},
    {"trusting", [] { return modelAt(stages::Trusting{}); }},
    {"trust-needed", [] { return modelAt(stages::TrustNeeded{text(Texts::trustNeededDismissed)}); }},
    {"checklist", [] { return checklist({}); }},
    {"asking", [] { return unapproved(activationstate::Running{text(Texts::activationAsking)}); }, true},
    {"awaiting-approval",
     [] { return unapproved(activationstate::AwaitingApproval{text(Texts::activationAwaitingApproval)}); },
     true},
    {"activation-failed", [] { return unapproved(activationAfterExit(1, "")); }},
    {"filter-error", filterFailed},
    {"protected", [] { return done("protected"); }},
    {"not-protected", [] { return done("not_protected"); }},
    {"verdict-unreported", [] { return done(""); }},
    {"repair",
     [] { return checklist(observed("ok", "SYSEXT_PROXY_DISABLED", false), OnboardingMode::repair); }},
    {"repair-trust",
     [] {
       return modelAt(stages::TrustNeeded{text(Texts::trustNeededOwedInRepair)}, OnboardingMode::repair);
     }},
    {"repaired", [] { return done("protected", OnboardingMode::repair); }},
};

constexpr auto names = [] {
  std::array<std::string_view, std::size(rows)> all;
  std::ranges::transform(rows, all.begin(), &StageRow::name);
  return all;
}();

}  // namespace

std::span<const std::string_view> onboardingStageNames() { return names; }

std::optional<OnboardingContent> onboardingAt(std::string_view stage) {
  const auto* row = std::ranges::find(rows, stage, &StageRow::name);
  if (row == std::end(rows)) return std::nullopt;
  return onboardingContent(row->model(), row->isActivating);
}

}  // namespace ostrel
