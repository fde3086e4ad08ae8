#include "OstrelAgent/Text/JsonNumbers.hpp"

#include <algorithm>
#include <charconv>

namespace ostrel {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t countDigits(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, isDigit) - text.begin());
}

/// Length of the JSON number at the front, or 0 when there is none.
std::size_t numberLength(std::string_view text) {
  std::size_t length = text.starts_with('-') ? 1 : 0;
  const auto whole = countDigits(text.substr(length));
  if (whole == 0 || (whole > 1 && text[length] == '0')) return 0;
  length += whole;
  if (text.substr(length).starts_with('.')) {
    const auto fraction = countDigits(text.substr(length + 1));
    if (fraction == 0) return 0;
    length += 1 + fraction;
  }
  if (length < text.size() && (text[length] == 'e' || text[length] == 'E')) {
    const bool isSigned = length + 1 < text.size() && (text[length + 1] == '+' || text[length + 1] == '-');
    const auto exponent = countDigits(text.substr(length + (isSigned ? 2 : 1)));
    if (exponent == 0) return 0;
    length += (isSigned ? 2 : 1) + exponent;
  }
  return length;
}

bool isHuge(std::string_view number) {
  double value = 0;
  return std::from_chars(number.data(), number.data() + number.size(), value).ec ==
         std::errc::result_out_of_range;
}

/// Length of the text in quotes at the front.
std::size_t quotedLength(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
  return std::min(end + 1, text.size());
}

}  // namespace

std::string withoutHugeNumbers(std::string_view json) {
  constexpr std::string_view small = "0.5";
  std::string copy(json);
  for (std::size_t at = 0; at < json.size();) {
    const auto rest = json.substr(at);
    if (rest.front() == '"') {
      at += quotedLength(rest);
      continue;
    }
    const auto length = numberLength(rest);
    if (length > small.size() && isHuge(rest.substr(0, length))) {
      copy.replace(at, length, std::string(small) + std::string(length - small.size(), ' '));
    }
    at += std::max<std::size_t>(length, 1);
  }
  return copy;
}

}  // namespace ostrel
