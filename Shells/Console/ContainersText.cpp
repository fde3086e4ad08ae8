#include "Shells/Console/ContainersText.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

#include "Shells/Console/PrintableText.hpp"
#include "Shells/Console/TextLines.hpp"

namespace ostrel {

namespace {

using Content = ContainersPageContent;

constexpr std::string_view indent = "  ";

/// Writes a command as it is, one line for each of its lines.
void command(TextLines& lines, std::string_view text) {
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    lines.line("    " + printableText(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void command(TextLines& lines, const Content::Command& command, std::string_view consoleName) {
  lines.blank();
  ostrel::command(lines, command.shown);
  lines.line(std::string(indent) + command.button.title + ": copy " + std::string(consoleName));
}

std::size_t nameColumns(const Content& content) {
  std::size_t widest = 0;
  for (const auto& section : content.sections) {
    for (const auto& row : section.rows) widest = std::max(widest, columns(row.name));
  }
  return widest;
}

void section(TextLines& lines, const Content::Section& section, std::size_t width) {
  if (section.rows.empty()) return;
  lines.line(section.caption);
  for (const auto& row : section.rows) {
    const std::string mark = row.isSelected ? "> " : "  ";
    lines.line(mark + padded(row.name, width) +
               (row.chips.empty() ? std::string() : "  " + row.chips.front().text));
  }
  lines.blank();
}

}  // namespace

std::string containersListText(const Content& content) {
  TextLines lines;
  if (!content.checking.empty()) {
    lines.line(content.title + ": " + content.checking);
    lines.blank();
  }
  for (const auto& each : content.sections) section(lines, each, nameColumns(content));
  return lines.take();
}

std::string containerDetailText(const Content& content) {
  TextLines lines;
  if (!content.detail) {
    lines.line(content.checking.empty() ? content.noSelection : content.title + ": " + content.checking);
    return lines.take();
  }
  const auto& detail = *content.detail;
  auto title = detail.name;
  for (const auto& chip : detail.chips) title += " · " + chip.text;
  lines.line(title);
  lines.paragraph(2, detail.state);
  lines.paragraph(2, detail.blocked);
  if (detail.setup) command(lines, *detail.setup, "setup");
  if (detail.guest) command(lines, *detail.guest, "guest");
  lines.blank();
  lines.line(std::string(indent) + detail.copyPath.title + ": copy path");
  lines.hanging(detail.isNotifyOn ? "  [x] " : "  [ ] ", detail.notifyLabel);
  lines.paragraph(2, content.authorization);
  return lines.take();
}

std::string containersInsideText(const Content& content) {
  TextLines lines;
  const auto& inside = content.inside;
  lines.line(inside.title);
  lines.paragraph(2, inside.lede);
  std::vector<std::string> choices;
  for (std::size_t i = 0; i < inside.choices.size(); ++i) {
    choices.push_back((i == inside.chosen ? "(•) " : "( ) ") + inside.choices[i]);
  }
  lines.flow(indent, choices, "   ");
  lines.blank();
  command(lines, inside.snippet.shown);
  lines.blank();
  lines.paragraph(2, inside.covers);
  return lines.take();
}

}  // namespace ostrel
