#include "Tools/PreviewInput.hpp"

#include <algorithm>

#include "OstrelAgent/Text/Json.hpp"

namespace ostrel {

namespace {

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

}  // namespace

std::vector<PreviewDocument> previewDocuments(std::string_view input) {
  std::vector<PreviewDocument> lines;
  std::size_t number = 0;
  for (std::size_t start = 0; start < input.size(); ++number) {
    const auto end = std::min(input.find('\n', start), input.size());
    const auto line = input.substr(start, end - start);
    start = end + 1;
    if (isBlank(line)) continue;
    if (lines.empty() && !JsonObject::parse(line))
      return {{.bytes = input, .linesBefore = 0, .isLine = false}};
    lines.push_back({.bytes = line, .linesBefore = number, .isLine = true});
  }
  return lines;
}

}  // namespace ostrel
