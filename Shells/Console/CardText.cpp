#include "Shells/Console/CardText.hpp"

#include <string_view>

namespace ostrel {

namespace {

std::string_view markOf(RowState::Case kind) {
  switch (kind) {
    case RowState::Case::ok:
      return "✓";
    case RowState::Case::warn:
      return "!";
    case RowState::Case::bad:
      return "✗";
    case RowState::Case::info:
      return "·";
    case RowState::Case::off:
      return "–";
  }
  return " ";
}

}  // namespace

std::string statePrefix(RowState::Case kind) { return std::string(markOf(kind)) + " "; }

void writeCard(TextLines& lines, const AttentionItem& card, const std::string& button) {
  auto title = card.title;
  if (const auto state = card.stateText(); !state.empty()) title.append(": ").append(state);
  lines.hanging(statePrefix(card.state.kind), title);
  lines.paragraph(2, card.detail);
  lines.paragraph(2, card.action);
  if (!button.empty()) lines.line("  " + button);
}

}  // namespace ostrel
