#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Onboarding/ActivationState.hpp"
#include "OstrelAgent/Onboarding/OnboardingChecklist.hpp"
#include "OstrelAgent/Onboarding/OnboardingStage.hpp"

namespace ostrel {

/// Why an action of a step failed; shown under its row.
struct OnboardingActionError {
  OnboardingChecklist::Step step = OnboardingChecklist::Step::approval;
  std::string message;

  bool operator==(const OnboardingActionError&) const = default;
};

/// The state behind the window.
struct OnboardingFlowModel {
  explicit OnboardingFlowModel(OnboardingMode modeOfLife)
      : mode(modeOfLife), stage(initialStage(modeOfLife)) {}

  const OnboardingMode mode;
  OnboardingStage stage;
  SetupObservation observation;
  ActivationState activation;
  std::optional<OnboardingActionError> actionError;
  std::string token;  ///< the latest valid one, trimmed; empty once enrolled
};

/// The trimmed token, or the reason why it is invalid.
[[nodiscard]] std::expected<std::string, std::string> acceptableToken(std::string_view typed);

}  // namespace ostrel
