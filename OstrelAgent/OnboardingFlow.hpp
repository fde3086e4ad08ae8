#pragma once

#include <array>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "OstrelAgent/Status/StatusRead.hpp"

namespace ostrel {

/// First setup, or what brings a Mac back that was set up before.
enum class OnboardingMode { onboard, repair };

namespace onboardingstage {
struct EnterToken {
  std::optional<std::string> error;  ///< shown under the field
  bool operator==(const EnterToken&) const = default;
};
struct TrustNeeded {
  std::string reason;
  bool operator==(const TrustNeeded&) const = default;
};
struct Enrolling {
  bool operator==(const Enrolling&) const = default;
};
struct Trusting {
  bool operator==(const Trusting&) const = default;
};
struct Checklist {
  bool operator==(const Checklist&) const = default;
};
}  // namespace onboardingstage

/// Where the person is on the way.
using OnboardingStage =
    std::variant<onboardingstage::EnterToken, onboardingstage::TrustNeeded, onboardingstage::Enrolling,
                 onboardingstage::Trusting, onboardingstage::Checklist>;

OnboardingStage initialStage(OnboardingMode mode);

/// What moves the stage on.
struct OnboardingEvent {
  enum class Kind {
    tokenRejected,  ///< before it was sent; with a text
    enrolmentBegan,
    enrolmentFailed,  ///< with a text
    trustBegan,
    trusted,
    trustRefused,  ///< dismissed or failed; with a text
    trustDeferred,
    trustOwed,  ///< found by a poll in repair; with a text
  };

  Kind kind = Kind::trustBegan;
  std::string text = {};

  bool operator==(const OnboardingEvent&) const = default;
};

/// The stage after an event, or nothing when the event does not concern the stage.
std::optional<OnboardingStage> stageAfter(const OnboardingStage& stage, const OnboardingEvent& event);

enum class ChecklistStepState { satisfied, pending, unreadable };

enum class SetupOutcome { unfinished, isProtected, stepsDoneNotProtected, verdictUnreported };

/// The three steps to a protected Mac, as an observation shows them.
class OnboardingChecklist {
 public:
  enum class Step { approval, proxy, diverting };
  using Steps = std::array<std::pair<Step, ChecklistStepState>, 3>;

  static ChecklistStepState state(Step step, const SetupObservation& observation);

  /// Every step in the order in which they are taken.
  static Steps steps(const SetupObservation& observation);
  static SetupOutcome outcome(const SetupObservation& observation);

  static std::string_view title(Step step);
  static std::string_view note(Step step, ChecklistStepState state);
};

namespace activationstate {
struct Running {
  std::string line;
  bool operator==(const Running&) const = default;
};
struct AwaitingApproval {
  std::string line;
  bool operator==(const AwaitingApproval&) const = default;
};
struct Failed {
  std::string message;
  bool operator==(const Failed&) const = default;
};
struct Idle {
  bool operator==(const Idle&) const = default;
};
}  // namespace activationstate

/// How the approval of the extension goes on.
using ActivationState = std::variant<activationstate::Idle, activationstate::Running,
                                     activationstate::AwaitingApproval, activationstate::Failed>;

/// The state that a piece of the activation's progress puts in its place, or nothing when it says nothing.
std::optional<ActivationState> activationOfProgress(std::string_view chunk);

/// The state after the activation has ended with that status and standard error.
ActivationState activationAfterExit(int status, std::string_view standardError);

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
  std::string token;  ///< the last that was acceptable, trimmed; empty once enrolled
};

/// The trimmed token, or why it cannot be one.
std::expected<std::string, std::string> acceptableToken(std::string_view typed);

}  // namespace ostrel
