#include "Platform/Desktop/Views/OnboardingState.hpp"

#include <QAccessible>
#include <algorithm>

#include "Platform/Desktop/Views/PanelValues.hpp"

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
  const auto set = [this](auto& member, const auto& value, auto changed) {
    if (member == value) return;
    member = value;
    emit(this->*changed)();
  };
  set(isRightToLeft_, content.direction == TextDirection::rightToLeft,
      &OnboardingState::isRightToLeftChanged);
  set(header_, valueOf(content.header), &OnboardingState::headerChanged);
  set(tokenField_, tokenFieldOf(content), &OnboardingState::tokenFieldChanged);
  set(progress_, textOf(content.progress), &OnboardingState::progressChanged);
  set(closingNote_, textOf(content.closingNote), &OnboardingState::closingNoteChanged);
  paragraphs_.show(texts(content.paragraphs));
  steps_.show(::ostrel::steps(content.rows));
  buttons_.show(::ostrel::buttons(content.buttons));
  if (hasOtherStage) emit stageChanged();
  return true;
}

void OnboardingState::setRoom(QSizeF room) {
  if (room_ == room) return;
  room_ = room;
  emit roomChanged();
}

void OnboardingState::pressPrimary(const QString& token) {
  const auto* primary = primaryOf(content_);
  if (primary != nullptr && primary->isEnabled) emit pressed(primary->action, token);
}

void OnboardingState::announce(QQuickItem* item) const {
  QAccessibleEvent event(item, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

}  // namespace ostrel
