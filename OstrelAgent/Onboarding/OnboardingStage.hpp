#pragma once

#include <optional>
#include <string>
#include <variant>

namespace ostrel {

/// First setup, or repair of a Mac that was set up before.
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

/// The page of the window and its state.
using OnboardingStage =
    std::variant<onboardingstage::EnterToken, onboardingstage::TrustNeeded, onboardingstage::Enrolling,
                 onboardingstage::Trusting, onboardingstage::Checklist>;

OnboardingStage initialStage(OnboardingMode mode);

/// Events that change the stage.
struct OnboardingEvent {
  enum class Kind {
    tokenRejected,  ///< invalid, so never sent; with a text
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

/// The stage after an event, or nullopt when the event does not apply.
std::optional<OnboardingStage> stageAfter(const OnboardingStage& stage, const OnboardingEvent& event);

}  // namespace ostrel
