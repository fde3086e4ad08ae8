#include "Shells/Console/TextLines.hpp"

#include <algorithm>

#include "Shells/Console/PrintableText.hpp"

namespace ostrel {

namespace {

constexpr std::size_t lineColumns = 80;

}  // namespace

std::size_t columns(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string padded(std::string_view text, std::size_t width) {
  std::string field(text);
  field.append(width - std::min(width, columns(text)), ' ');
  return field;
}

void TextLines::line(std::string_view text) {
  text.remove_suffix(text.size() - std::min(text.find_last_not_of(' ') + 1, text.size()));
  text_ += text;
  text_ += '\n';
}

void TextLines::paragraph(std::size_t indent, std::string_view words) {
  if (!words.empty()) hanging(std::string(indent, ' '), words);
}

void TextLines::hanging(std::string_view prefix, std::string_view words) {
  const auto printable = printableText(words);
  std::vector<std::string> pieces;
  for (std::string_view rest = printable; !rest.empty();) {
    const auto end = std::min(rest.find(' '), rest.size());
    if (end > 0) pieces.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  flow(prefix, pieces, " ");
}

void TextLines::flow(std::string_view prefix, const std::vector<std::string>& pieces, std::string_view gap) {
  const std::string indent(columns(prefix), ' ');
  std::string current(prefix);
  bool isStart = true;
  for (const auto& piece : pieces) {
    if (!isStart && columns(current) + gap.size() + columns(piece) > lineColumns) {
      line(current);
      current = indent;
      isStart = true;
    }
    if (!isStart) current += gap;
    current += piece;
    isStart = false;
  }
  line(current);
}

}  // namespace ostrel
