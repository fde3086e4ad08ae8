#include "OstrelAgent/Text/Whitespace.hpp"

#include <algorithm>
#include <array>
#include <span>

namespace ostrel {

namespace {

// In UTF-8: tab and the code points of the general category "space separator".
constexpr std::array<std::string_view, 18> blanks = {
    "\t",     " ",      "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
    "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u202F", "\u205F", "\u3000",
};
constexpr std::array<std::string_view, 7> lineEnds = {"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"};

using Holds = bool (*)(std::string_view text, std::string_view piece);

constexpr Holds startsWith = [](std::string_view text, std::string_view piece) {
  return text.starts_with(piece);
};
constexpr Holds endsWith = [](std::string_view text, std::string_view piece) {
  return text.ends_with(piece);
};

/// The length of the matching piece, or 0.
std::size_t lengthOf(std::span<const std::string_view> pieces, Holds holds, std::string_view text) {
  const auto piece = std::ranges::find_if(pieces, [&](std::string_view each) { return holds(text, each); });
  return piece == pieces.end() ? 0 : piece->size();
}

std::size_t spaceOf(std::string_view text, Holds holds) {
  const auto blank = lengthOf(blanks, holds, text);
  return blank > 0 ? blank : lengthOf(lineEnds, holds, text);
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (const auto size = spaceOf(text, startsWith)) text.remove_prefix(size);
  while (const auto size = spaceOf(text, endsWith)) text.remove_suffix(size);
  return text;
}

bool isBlank(std::string_view text) {
  while (const auto size = lengthOf(blanks, startsWith, text)) text.remove_prefix(size);
  return text.empty();
}

}  // namespace ostrel
