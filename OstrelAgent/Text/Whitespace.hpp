#pragma once

#include <string_view>

namespace ostrel {

/// The text without whitespace at both ends: tabs, Unicode space separators, line and paragraph separators.
std::string_view trimmed(std::string_view text);

/// True when the text has only tabs and space separators.
bool isBlank(std::string_view text);

}  // namespace ostrel
