#include "Shells/Desktop/Views/Onboarding/OnboardingState.hpp"

#include <algorithm>

#include "Shells/Desktop/Views/Common/Change.hpp"
#include "Shells/Desktop/Views/Panel/PanelValues.hpp"

namespace ostrel {

namespace {

using Entries = std::vector<ValueList::Entry>;

Entries texts(const std::vector<std::string>& paragraphs) {
  Entries entries;
  for (const auto& paragraph : paragraphs) entries.push_back({textOf(paragraph), textOf(paragraph)});
  return entries;
}

Entries steps(const std::vector<OnboardingContent::Row>& rows) {
  Entries entries;
  for (const auto& row : rows) {
    entries.push_back({QString::number(static_cast<int>(row.step)), QVariant::fromValue(valueOf(row))});
  }
  return entries;
}

Entries buttons(const std::vector<OnboardingButton>& buttons) {
  Entries entries;
  for (const auto& button : buttons) {
    entries.push_back(
        {QString::number(static_cast<int>(button.action)), QVariant::fromValue(valueOf(button))});
  }
  return entries;
}

bool isOtherStage(const OnboardingContent& one, const OnboardingContent& other) {
  return one.tokenField.has_value() != other.tokenField.has_value() || one.rows.empty() != other.rows.empty();
}

const OnboardingButton* primaryOf(const std::vector<OnboardingButton>& buttons) {
  const auto found = std::ranges::find(buttons, true, &OnboardingButton::isPrimary);
  return found == buttons.end() ? nullptr : &*found;
}

const OnboardingButton* primaryOf(const OnboardingContent& content) {
  for (const auto& row : content.rows) {
    if (const auto* primary = primaryOf(row.buttons)) return primary;
  }
  return primaryOf(content.buttons);
}

}  // namespace

bool OnboardingState::show(const OnboardingContent& content) {
  if (content == content_) return false;
  const bool hasOtherStage = isOtherStage(content_, content);
  content_ = content;
  change(*this, isRightToLeft_, content.direction == TextDirection::rightToLeft,
         &OnboardingState::isRightToLeftChanged);
  change(*this, header_, valueOf(content.header), &OnboardingState::headerChanged);
  change(*this, tokenField_, tokenFieldOf(content), &OnboardingState::tokenFieldChanged);
  change(*this, progress_, textOf(content.progress), &OnboardingState::progressChanged);
  change(*this, closingNote_, textOf(content.closingNote), &OnboardingState::closingNoteChanged);
  paragraphs_.show(texts(content.paragraphs));
  steps_.show(::ostrel::steps(content.rows));
  buttons_.show(::ostrel::buttons(content.buttons));
  if (hasOtherStage) emit stageChanged();
  return true;
}

void OnboardingState::pressPrimary(const QString& token) {
  const auto* primary = primaryOf(content_);
  if (primary != nullptr && primary->isEnabled) emit pressed(primary->action, token);
}

}  // namespace ostrel
