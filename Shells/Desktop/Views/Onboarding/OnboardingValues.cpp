#include "Shells/Desktop/Views/Onboarding/OnboardingValues.hpp"

#include <QStringList>
#include <algorithm>
#include <iterator>
#include <string_view>

#include "Shells/Desktop/Views/Panel/PanelValues.hpp"

namespace ostrel {

namespace {

struct SymbolRow {
  std::string_view symbol;
  shieldform::Form form;
  bool isMarked;
  statekind::Kind mark;
};

constexpr SymbolRow symbolRows[] = {
    {"shield", shieldform::Outlined, false, statekind::Off},
    {"shield.lefthalf.filled", shieldform::HalfFilled, false, statekind::Off},
    {"checkmark.shield.fill", shieldform::Filled, true, statekind::Ok},
    {"exclamationmark.shield", shieldform::Outlined, true, statekind::Warn},
    {"exclamationmark.shield.fill", shieldform::Filled, true, statekind::Warn},
};

/// An unknown symbol gives the bare shield.
const SymbolRow& rowOf(std::string_view symbol) {
  const auto* row = std::ranges::find(symbolRows, symbol, &SymbolRow::symbol);
  return row == std::end(symbolRows) ? symbolRows[0] : *row;
}

statekind::Kind kindOf(OnboardingContent::Tint tint) {
  switch (tint) {
    case OnboardingContent::Tint::accent:
      return statekind::Info;
    case OnboardingContent::Tint::amber:
      return statekind::Warn;
    case OnboardingContent::Tint::green:
      return statekind::Ok;
    case OnboardingContent::Tint::red:
      return statekind::Bad;
    case OnboardingContent::Tint::secondary:
      return statekind::Off;
  }
  return statekind::Off;
}

statekind::Kind kindOf(ChecklistStepState state) {
  switch (state) {
    case ChecklistStepState::satisfied:
      return statekind::Ok;
    case ChecklistStepState::pending:
      return statekind::Warn;
    case ChecklistStepState::unreadable:
      return statekind::Off;
  }
  return statekind::Off;
}

}  // namespace

QVariantList StepValue::buttonList() const {
  QVariantList list;
  for (const auto& button : buttons) list.append(QVariant::fromValue(button));
  return list;
}

OnboardingHeaderValue valueOf(const OnboardingContent::Header& header) {
  const auto& row = rowOf(header.symbol);
  return {
      row.form, row.isMarked, row.mark, kindOf(header.tint), textOf(header.title), textOf(header.subtitle)};
}

OnboardingButtonValue valueOf(const OnboardingButton& button) {
  return {textOf(button.title), button.isPrimary, button.isEnabled, button.action};
}

TokenFieldValue tokenFieldOf(const OnboardingContent& content) {
  if (!content.tokenField) return {};
  // The text above the field says what is to be entered.
  QStringList prompt;
  for (const auto& paragraph : content.paragraphs) prompt.append(textOf(paragraph));
  return {true, content.tokenField->isEnabled, textOf(content.tokenField->error),
          prompt.join(QLatin1Char(' '))};
}

StepValue valueOf(const OnboardingContent::Row& row) {
  QStringList errors;
  for (const auto& error : row.errors) errors.append(textOf(error));
  StepValue value{kindOf(row.state),
                  textOf(row.title),
                  textOf(row.note),
                  textOf(row.progress),
                  errors.join(QLatin1Char('\n')),
                  {}};
  for (const auto& button : row.buttons) value.buttons.append(valueOf(button));
  return value;
}

}  // namespace ostrel
