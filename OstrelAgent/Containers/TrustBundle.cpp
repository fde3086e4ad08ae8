#include "OstrelAgent/Containers/TrustBundle.hpp"

#include <algorithm>
#include <ranges>

#include "OstrelAgent/Text/Utf8.hpp"
#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel::trustbundle {

std::optional<std::string> usableText(std::string bytes) {
  using namespace std::string_view_literals;
  if (bytes.size() > maxBytes || !isUtf8(bytes)) return std::nullopt;
  const auto text = trimmed(bytes);
  if (text.empty() || bytes.find_first_of("'\r\0"sv) != bytes.npos) return std::nullopt;
  const bool endsHereDocument = std::ranges::any_of(
      text | std::views::split('\n'), [](auto line) { return std::string_view(line) == "EOF"; });
  if (endsHereDocument) return std::nullopt;
  return bytes;
}

}  // namespace ostrel::trustbundle
