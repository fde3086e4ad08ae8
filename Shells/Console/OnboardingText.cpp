#include "Shells/Console/OnboardingText.hpp"

#include <string_view>
#include <vector>

#include "Shells/Console/PrintableText.hpp"
#include "Shells/Console/TextLines.hpp"

namespace ostrel {

namespace {

std::string_view markOf(ChecklistStepState state) {
  switch (state) {
    case ChecklistStepState::satisfied:
      return "✓ ";
    case ChecklistStepState::pending:
      return "! ";
    case ChecklistStepState::unreadable:
      return "? ";
  }
  return "  ";
}

std::string_view markOf(OnboardingContent::Tint tint) {
  switch (tint) {
    case OnboardingContent::Tint::green:
      return "✓ ";
    case OnboardingContent::Tint::amber:
      return "! ";
    case OnboardingContent::Tint::red:
      return "✗ ";
    case OnboardingContent::Tint::accent:
    case OnboardingContent::Tint::secondary:
      return "· ";
  }
  return "  ";
}

/// Writes one window from top to bottom.
class OnboardingPrinter {
 public:
  explicit OnboardingPrinter(const OnboardingContent& content) : content_(content) {}

  std::string print() {
    header();
    for (const auto& paragraph : content_.paragraphs) lines_.paragraph(2, paragraph);
    if (content_.tokenField) tokenField(*content_.tokenField);
    lines_.paragraph(2, content_.progress);
    for (const auto& each : content_.rows) row(each);
    lines_.paragraph(2, content_.closingNote);
    buttons(content_.buttons, "  ");
    return lines_.take();
  }

 private:
  void header() {
    const auto& header = content_.header;
    lines_.hanging(markOf(header.tint), header.title);
    lines_.paragraph(2, header.subtitle);
    lines_.blank();
  }

  void tokenField(const OnboardingContent::TokenField& field) {
    lines_.paragraph(2, field.error);
    if (field.isEnabled) lines_.line("  token TEXT");
  }

  void row(const OnboardingContent::Row& row) {
    lines_.hanging(markOf(row.state), row.title);
    lines_.paragraph(2, row.note);
    lines_.paragraph(2, row.progress);
    for (const auto& error : row.errors) lines_.paragraph(2, error);
    buttons(row.buttons, "  ");
    lines_.blank();
  }

  void buttons(const std::vector<OnboardingButton>& buttons, std::string_view prefix) {
    std::vector<std::string> pieces;
    for (const auto& button : buttons) {
      pieces.push_back("[" + std::to_string(++buttonNumber_) + "] " + printableText(button.title));
    }
    if (!pieces.empty()) lines_.flow(prefix, pieces, "   ");
  }

  const OnboardingContent& content_;
  std::size_t buttonNumber_ = 0;
  TextLines lines_;
};

}  // namespace

std::string onboardingText(const OnboardingContent& content) { return OnboardingPrinter(content).print(); }

}  // namespace ostrel
