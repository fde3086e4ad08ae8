#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Onboarding/OnboardingFlow.hpp"
#include "OstrelAgent/Text/TextDirection.hpp"

namespace ostrel {

/// The action of a button of the window.
enum class OnboardingAction {
  enrol,
  retryTrust,
  deferTrust,
  reopenApprovalPrompt,
  openExtensionSettings,
  turnOnNetworkFilter,
  finish,
};

/// A button. At most one of a window is the primary one.
struct OnboardingButton {
  std::string title;
  OnboardingAction action = OnboardingAction::finish;
  bool isPrimary = false;
  bool isEnabled = true;

  bool operator==(const OnboardingButton&) const = default;
};

/// Everything the onboarding and repair window shows, as plain comparable data. Typed text stays in the view:
/// the content never holds a token.
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
    std::string progress;             ///< progress of the step's action; may be empty
    std::vector<std::string> errors;  ///< one sentence per failed action of the step
    std::vector<OnboardingButton> buttons;

    bool operator==(const Row&) const = default;
  };

  TextDirection direction = TextDirection::leftToRight;
  std::string windowTitle;
  Header header;
  std::vector<std::string> paragraphs;  ///< introduction of the stage
  std::optional<TokenField> tokenField;
  std::string progress;  ///< what the window waits for; may be empty
  std::vector<Row> rows;
  std::string closingNote;                ///< below the rows; may be empty
  std::vector<OnboardingButton> buttons;  ///< in the window's footer

  /// All buttons from top to bottom.
  std::vector<OnboardingButton> allButtons() const;

  bool operator==(const OnboardingContent&) const = default;
};

/// The window's content for a model; `isActivating` while an activation runs.
OnboardingContent onboardingContent(const OnboardingFlowModel& model, bool isActivating);

}  // namespace ostrel
