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

/// Writes the button, or the word that does the same.
void copyButton(TextLines& lines, const Content::CopyButton& button, std::string_view word,
                WindowButtons* buttons) {
  lines.line(std::string(indent) +
             (buttons != nullptr ? buttons->mark(button) : button.title + ": copy " + std::string(word)));
}

void command(TextLines& lines, const Content::Command& command, std::string_view word,
             WindowButtons* buttons) {
  lines.blank();
  ostrel::command(lines, command.shown);
  copyButton(lines, command.button, word, buttons);
}

/// Writes the buttons for the trust bundle and for notifications.
void detailButtons(TextLines& lines, const Content& content, WindowButtons* buttons) {
  const auto& detail = *content.detail;
  lines.blank();
  if (buttons != nullptr) lines.line(std::string(indent) + buttons->mark(detail.reveal));
  copyButton(lines, detail.copyPath, "path", buttons);
  const std::string box = detail.isNotifyOn ? "[x] " : "[ ] ";
  const NotifySwitch press{detail.name, !detail.isNotifyOn};
  lines.hanging(
      std::string(indent) + (buttons != nullptr ? buttons->switchMark(detail.isNotifyOn, {press}) : box),
      detail.notifyLabel);
  lines.paragraph(2, content.authorization);
  if (buttons != nullptr && content.authorizationButton) {
    lines.line(std::string(indent) + buttons->mark(*content.authorizationButton));
  }
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

std::string containerDetailText(const Content& content, WindowButtons* buttons) {
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
  if (detail.setup) command(lines, *detail.setup, "setup", buttons);
  if (detail.guest) command(lines, *detail.guest, "guest", buttons);
  detailButtons(lines, content, buttons);
  return lines.take();
}

std::string containersInsideText(const Content& content, WindowButtons* buttons) {
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
  if (buttons != nullptr) copyButton(lines, inside.snippet.button, "", buttons);
  lines.blank();
  lines.paragraph(2, inside.covers);
  return lines.take();
}

}  // namespace ostrel
