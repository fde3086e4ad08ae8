#pragma once

#include <array>
#include <string_view>
#include <utility>

#include "OstrelAgent/Status/StatusRead.hpp"

namespace ostrel {

enum class ChecklistStepState { satisfied, pending, unreadable };

enum class SetupOutcome { unfinished, isProtected, stepsDoneNotProtected, verdictUnreported };

/// The three steps to a protected Mac, derived from an observation.
class OnboardingChecklist {
 public:
  enum class Step { approval, proxy, diverting };
  using Steps = std::array<std::pair<Step, ChecklistStepState>, 3>;

  static ChecklistStepState state(Step step, const SetupObservation& observation);

  /// The steps in the order in which they are taken.
  static Steps steps(const SetupObservation& observation);
  static SetupOutcome outcome(const SetupObservation& observation);

  static std::string_view title(Step step);
  static std::string_view note(Step step, ChecklistStepState state);
};

}  // namespace ostrel
