#include "Platform/Console/PanelText.hpp"

#include <algorithm>
#include <string_view>

#include "Platform/Console/PrintableText.hpp"

namespace ostrel {

namespace {

constexpr std::size_t lineColumns = 80;
constexpr std::string_view buttonGap = "   ";

std::string_view markOf(RowState::Case kind) {
  switch (kind) {
    case RowState::Case::ok:
      return "✓";
    case RowState::Case::warn:
      return "!";
    case RowState::Case::bad:
      return "✗";
    case RowState::Case::info:
      return "·";
    case RowState::Case::off:
      return "–";
  }
  return " ";
}

/// Columns a text takes, a code point each.
std::size_t columns(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string padded(std::string_view text, std::size_t width) {
  std::string field(text);
  field.append(width - std::min(width, columns(text)), ' ');
  return field;
}

/// Writes one panel from top to bottom.
class PanelPrinter {
 public:
  PanelPrinter(const PanelContent& content, ButtonMarks marks) : content_(content), marks_(marks) {
    for (const auto& fact : content.facts) widen(fact.label, 0);
    if (content.protection) {
      const auto& protection = *content.protection;
      for (const auto* row : {&protection.guard, &protection.egressLock, &protection.containers})
        widen(row->label, 0);
    }
    if (content.health) {
      widen(content.health->rollup.label, 0);
      for (const auto& row : content.health->components) widen(row.label, componentIndent);
    }
  }

  std::string print() {
    header();
    if (content_.update) update(*content_.update);
    for (const auto& item : content_.cards) card(item);
    if (content_.protection) protection(*content_.protection);
    if (content_.health) health(*content_.health);
    facts();
    footer();
    for (const auto& notice : content_.notices) paragraph(2, notice);
    return std::move(text_);
  }

 private:
  static constexpr std::size_t componentIndent = 2;

  void widen(std::string_view label, std::size_t indent) {
    labelColumns_ = std::max(labelColumns_, indent + columns(label));
  }

  void line(std::string_view text) {
    text.remove_suffix(text.size() - std::min(text.find_last_not_of(' ') + 1, text.size()));
    text_ += text;
    text_ += '\n';
  }
  void blank() { text_ += '\n'; }

  /// Writes words in lines, each indented; nothing for an empty text.
  void paragraph(std::size_t indent, std::string_view words) {
    if (!words.empty()) hanging(std::string(indent, ' '), words);
  }

  /// Writes words behind a prefix, the lines that follow indented by its width.
  void hanging(std::string_view prefix, std::string_view words) {
    const auto printable = printableText(words);
    std::vector<std::string> pieces;
    for (std::string_view rest = printable; !rest.empty();) {
      const auto end = std::min(rest.find(' '), rest.size());
      if (end > 0) pieces.emplace_back(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    flow(prefix, pieces, " ");
  }

  /// Writes pieces behind a prefix with a gap between them, in as many lines as they need.
  void flow(std::string_view prefix, const std::vector<std::string>& pieces, std::string_view gap) {
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

  std::string mark(const PanelButton& button) {
    if (marks_ == ButtonMarks::plain) return "[" + button.title + "]";
    return "[" + std::to_string(++buttonNumber_) + "] " + button.title;
  }

  static std::string prefix(RowState::Case kind) { return std::string(markOf(kind)) + " "; }

  void header() {
    const auto& header = content_.header;
    std::vector<std::string> pieces = {printableText(header.word)};
    for (const auto& button : content_.headerButtons) pieces.push_back(mark(button));
    flow(prefix(header.tint), pieces, buttonGap);
    if (header.deadlineLine) paragraph(2, *header.deadlineLine);
    if (content_.statusError) paragraph(2, content_.statusError->text);
    blank();
  }

  void update(const PanelContent::Update& update) {
    auto title = update.state.text;
    if (!update.version.empty()) title += " " + update.version;
    if (!update.belowMinimum.empty()) title += " (" + update.belowMinimum + ")";
    hanging(prefix(update.state.kind), title);
    if (!update.installing.empty()) paragraph(2, update.installing + " " + update.protectionStaysOn);
    if (update.button) line("  " + mark(*update.button));
    blank();
  }

  void card(const AttentionItem& item) {
    auto title = item.title;
    if (const auto state = item.stateText(); !state.empty()) title.append(": ").append(state);
    hanging(prefix(item.state.kind), title);
    paragraph(2, item.detail);
    paragraph(2, item.action);
    if (item.button) line("  " + mark(*item.button));
    blank();
  }

  void row(const PanelContent::Row& row, std::size_t indent) {
    const auto label = padded(row.label, labelColumns_ - indent);
    hanging(std::string(indent, ' ') + prefix(row.state.kind) + label + "  ", row.state.text);
  }

  void protection(const PanelContent::Protection& protection) {
    row(protection.guard, 0);
    ecosystems(protection.ecosystems);
    paragraph(4, protection.noEcosystems);
    paragraph(4, protection.offNote);
    row(protection.egressLock, 0);
    row(protection.containers, 0);
    blank();
  }

  void ecosystems(const std::vector<PanelContent::Ecosystem>& ecosystems) {
    std::vector<std::string> chips;
    for (const auto& ecosystem : ecosystems) {
      auto chip = prefix(ecosystem.state.kind) + ecosystem.name;
      if (!ecosystem.state.text.empty()) chip += ": " + ecosystem.state.text;
      chips.push_back(printableText(chip));
    }
    if (!chips.empty()) flow("    ", chips, "   ");
  }

  void health(const PanelContent::Health& health) {
    row(health.rollup, 0);
    for (const auto& component : health.components) row(component, componentIndent);
    blank();
  }

  void facts() {
    for (const auto& fact : content_.facts)
      hanging("  " + padded(fact.label, labelColumns_) + "  ", fact.value);
  }

  void footer() {
    std::vector<std::string> buttons;
    for (const auto* group : {&content_.footerButtons, &content_.moreButtons}) {
      for (const auto& button : *group) buttons.push_back(mark(button));
    }
    if (buttons.empty()) return;
    blank();
    flow("  ", buttons, buttonGap);
  }

  const PanelContent& content_;
  ButtonMarks marks_;
  std::size_t labelColumns_ = 0;
  std::size_t buttonNumber_ = 0;
  std::string text_;
};

}  // namespace

std::string panelText(const PanelContent& content, ButtonMarks marks) {
  return PanelPrinter(content, marks).print();
}

}  // namespace ostrel
