#include "Shells/Desktop/Views/Window/ContainersValues.hpp"

#include <algorithm>

namespace ostrel {

namespace {

using Content = ContainersPageContent;

QVariantList valuesOf(const std::vector<Content::Chip>& chips) {
  QVariantList values;
  for (const auto& chip : chips) {
    values.append(QVariant::fromValue(ChipValue{textOf(chip.text), chip.kind == ContainerChip::blocked}));
  }
  return values;
}

bool isBlocked(const std::vector<Content::Chip>& chips) {
  return std::ranges::find(chips, ContainerChip::blocked, &Content::Chip::kind) != chips.end();
}

RuntimeValue valueOf(const Content::Row& row) {
  RuntimeValue value;
  value.name = textOf(row.name);
  value.isDim = row.chips.empty();
  value.isSelected = row.isSelected;
  value.kind = isBlocked(row.chips) ? statekind::Warn : statekind::Info;
  value.chips = valuesOf(row.chips);
  value.accessibleName = value.name;
  for (const auto& chip : row.chips) value.accessibleName += QStringLiteral(", ") + textOf(chip.text);
  return value;
}

CopyButtonValue valueOf(const Content::CopyButton& button) {
  return {textOf(button.title), textOf(button.copied), button.copies};
}

CommandValue valueOf(const Content::Command& command) {
  return {textOf(command.shown), valueOf(command.button)};
}

CommandValue valueOf(const std::optional<Content::Command>& command) {
  return command ? valueOf(*command) : CommandValue();
}

}  // namespace

std::vector<ValueList::Entry> runtimes(const std::vector<Content::Section>& sections) {
  std::vector<ValueList::Entry> entries;
  for (const auto& section : sections) {
    for (const auto& row : section.rows) {
      auto value = valueOf(row);
      value.isFirst = &row == &section.rows.front();
      value.isLast = &row == &section.rows.back();
      if (value.isFirst) value.caption = textOf(section.caption);
      entries.push_back({value.name, QVariant::fromValue(value)});
    }
  }
  return entries;
}

RuntimeDetailValue detailOf(const Content& content) {
  if (!content.detail) return {};
  const auto& detail = *content.detail;
  const bool hasOtherPrimary = !detail.blocked.empty() && (detail.setup || detail.guest);
  return {.name = textOf(detail.name),
          .chips = valuesOf(detail.chips),
          .state = textOf(detail.state),
          .blocked = textOf(detail.blocked),
          .setup = valueOf(detail.setup),
          .guest = valueOf(detail.guest),
          .reveal = valueOf(std::optional(detail.reveal), false),
          .copyPath = valueOf(detail.copyPath),
          .notifyLabel = textOf(detail.notifyLabel),
          .isNotifyOn = detail.isNotifyOn,
          .authorization = textOf(content.authorization),
          .authorizationButton =
              valueOf(content.authorizationButton,
                      !hasOtherPrimary && content.authorizationButton &&
                          content.authorizationButton->action == PageAction::allowNotifications)};
}

InsideValue valueOf(const Content::Inside& inside) {
  InsideValue value{.title = textOf(inside.title),
                    .lede = textOf(inside.lede),
                    .choices = {},
                    .chosen = static_cast<int>(inside.chosen),
                    .snippet = valueOf(inside.snippet),
                    .covers = textOf(inside.covers)};
  for (const auto& choice : inside.choices) value.choices.append(textOf(choice));
  return value;
}

}  // namespace ostrel
