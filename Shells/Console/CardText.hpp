#pragma once

#include <string>

#include "OstrelAgent/Panel/AttentionItems.hpp"
#include "Shells/Console/TextLines.hpp"

namespace ostrel {

/// The sign in front of a row, with a blank: "✓ ", "! ", "✗ ", "· " or "– ".
std::string statePrefix(RowState::Case kind);

/// Writes a card; the title and state in one line, a button that is not empty below its texts.
void writeCard(TextLines& lines, const AttentionItem& card, const std::string& button);

}  // namespace ostrel
