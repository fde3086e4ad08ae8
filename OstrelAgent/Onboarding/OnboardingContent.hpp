#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Onboarding/OnboardingFlow.hpp"
#include "OstrelAgent/Text/TextDirection.hpp"

namespace ostrel {

/// What a button of the window does; one for each member of the window's actions.
enum class OnboardingAction {
  enrol,
  retryTrust,
  deferTrust,
  reopenApprovalPrompt,
  openExtensionSettings,
  turnOnNetworkFilter,
  finish,
};

/// A button, by value. At most one of a window is its primary one.
struct OnboardingButton {
  std::string title;
  OnboardingAction action = OnboardingAction::finish;
  bool isPrimary = false;
  bool isEnabled = true;

  bool operator==(const OnboardingButton&) const = default;
};

/// Everything the onboarding and repair window shows, as plain comparable data. What the person has typed is
/// the view's own: a token is in no content.
struct OnboardingContent {
  enum class Tint { accent, amber, green, red, secondary };

  struct Header {
    std::string_view symbol;
    Tint tint = Tint::accent;
    std::string title;
    std::string subtitle;  ///< may be empty

    bool operator==(const Header&) const = default;
  };

  struct TokenField {
    bool isEnabled = true;
    std::string error;  ///< under the field; may be empty

    bool operator==(const TokenField&) const = default;
  };

  struct Row {
    OnboardingChecklist::Step step = OnboardingChecklist::Step::approval;
    ChecklistStepState state = ChecklistStepState::unreadable;
    std::string title;
    std::string note;
    std::string progress;             ///< how the step's action goes on; may be empty
    std::vector<std::string> errors;  ///< why actions of the step failed, a sentence each
    std::vector<OnboardingButton> buttons;

    bool operator==(const Row&) const = default;
  };

  TextDirection direction = TextDirection::leftToRight;
  std::string windowTitle;
  Header header;
  std::vector<std::string> paragraphs;  ///< what the stage is about
  std::optional<TokenField> tokenField;
  std::string progress;  ///< what is waited for; empty when nothing is
  std::vector<Row> rows;
  std::string closingNote;                ///< below the rows; may be empty
  std::vector<OnboardingButton> buttons;  ///< of the window's foot

  /// Every button, in the order in which a person meets them.
  std::vector<OnboardingButton> allButtons() const;

  bool operator==(const OnboardingContent&) const = default;
};

/// The window for a model. `isActivating` tells that an activation runs.
OnboardingContent onboardingContent(const OnboardingFlowModel& model, bool isActivating);

}  // namespace ostrel
