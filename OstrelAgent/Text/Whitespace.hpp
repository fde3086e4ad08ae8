#pragma once

#include <string_view>

namespace ostrel {

/// The text without the blanks and line ends at both ends: tab, the space separators of Unicode, and what
/// ends a line or paragraph.
std::string_view trimmed(std::string_view text);

/// True when the text has nothing but tabs and space separators.
bool isBlank(std::string_view text);

}  // namespace ostrel
