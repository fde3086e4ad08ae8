#include "OstrelAgent/Text/TextDirection.hpp"

#include <algorithm>
#include <cstddef>
#include <span>

namespace ostrel {

namespace {

struct Points {
  char32_t first;
  char32_t last;
};

/// Unicode blocks with right-to-left letters, and the right-to-left mark.
constexpr Points rightToLeftLetters[] = {{0x0590, 0x08FF}, {0x200F, 0x200F},   {0xFB1D, 0xFDFF},
                                         {0xFE70, 0xFEFC}, {0x10800, 0x10FFF}, {0x1E800, 0x1EFFF}};

/// Code points that are not letters: punctuation, digits, symbols, combining marks.
constexpr Points withoutDirection[] = {{0x0000, '@'},    {'[', '`'},       {'{', 0x00BF},
                                       {0x0300, 0x036F}, {0x0660, 0x0669}, {0x06F0, 0x06F9},
                                       {0x2000, 0x200D}, {0x2010, 0x2BFF}, {0x3000, 0x3020},
                                       {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}, {0x1F000, 0x1FAFF}};

bool isAmong(std::span<const Points> points, char32_t point) {
  return std::ranges::any_of(points, [&](Points p) { return p.first <= point && point <= p.last; });
}

/// Removes and returns the first code point of a non-empty UTF-8 text.
char32_t takePoint(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char32_t point = length == 1 ? lead : lead & (0x7FU >> length);
  for (const char tail : text.substr(1, length - 1)) {
    point = (point << 6) | (static_cast<unsigned char>(tail) & 0x3FU);
  }
  text.remove_prefix(std::min(length, text.size()));
  return point;
}

}  // namespace

TextDirection directionOf(std::string_view text) {
  while (!text.empty()) {
    const auto point = takePoint(text);
    if (isAmong(withoutDirection, point)) continue;
    return isAmong(rightToLeftLetters, point) ? TextDirection::rightToLeft : TextDirection::leftToRight;
  }
  return TextDirection::leftToRight;
}

}  // namespace ostrel
