#include "OstrelAgent/Text/AsciiCase.hpp"

#include <algorithm>

namespace ostrel {

bool containsIgnoringCase(std::string_view text, std::string_view part) {
  const auto lowerCase = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return part.empty() || !std::ranges::search(text, part, {}, lowerCase, lowerCase).empty();
}

}  // namespace ostrel
