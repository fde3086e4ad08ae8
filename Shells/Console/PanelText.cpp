#include "Shells/Console/PanelText.hpp"

#include <algorithm>
#include <string_view>

#include "Shells/Console/CardText.hpp"
#include "Shells/Console/PrintableText.hpp"
#include "Shells/Console/TextLines.hpp"

namespace ostrel {

namespace {

constexpr std::string_view buttonGap = "   ";

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
    notices();
    footer();
    return lines_.take();
  }

 private:
  static constexpr std::size_t componentIndent = 2;

  void widen(std::string_view label, std::size_t indent) {
    labelColumns_ = std::max(labelColumns_, indent + columns(label));
  }

  std::string mark(const PanelButton& button) {
    if (marks_ == ButtonMarks::plain) return "[" + button.title + "]";
    return "[" + std::to_string(++buttonNumber_) + "] " + button.title;
  }

  void header() {
    const auto& header = content_.header;
    std::vector<std::string> pieces = {printableText(header.word)};
    for (const auto& button : content_.headerButtons) pieces.push_back(mark(button));
    lines_.flow(statePrefix(header.tint), pieces, buttonGap);
    if (header.deadlineLine) lines_.paragraph(2, *header.deadlineLine);
    if (content_.statusError) lines_.paragraph(2, content_.statusError->text);
    lines_.blank();
  }

  void update(const PanelContent::Update& update) {
    auto title = update.state.text;
    if (!update.version.empty()) title += " " + update.version;
    if (!update.belowMinimum.empty()) title += " (" + update.belowMinimum + ")";
    lines_.hanging(statePrefix(update.state.kind), title);
    if (!update.installing.empty()) lines_.paragraph(2, update.installing + " " + update.protectionStaysOn);
    if (update.button) lines_.line("  " + mark(*update.button));
    lines_.blank();
  }

  void card(const AttentionItem& item) {
    writeCard(lines_, item, item.button ? mark(*item.button) : std::string());
    lines_.blank();
  }

  void row(const PanelContent::Row& row, std::size_t indent) {
    const auto label = padded(row.label, labelColumns_ - indent);
    lines_.hanging(std::string(indent, ' ') + statePrefix(row.state.kind) + label + "  ", row.state.text);
  }

  void protection(const PanelContent::Protection& protection) {
    row(protection.guard, 0);
    ecosystems(protection.ecosystems);
    lines_.paragraph(4, protection.noEcosystems);
    lines_.paragraph(4, protection.offNote);
    row(protection.egressLock, 0);
    row(protection.containers, 0);
    lines_.blank();
  }

  void ecosystems(const std::vector<PanelContent::Ecosystem>& ecosystems) {
    std::vector<std::string> chips;
    for (const auto& ecosystem : ecosystems) {
      auto chip = statePrefix(ecosystem.state.kind) + ecosystem.name;
      if (!ecosystem.state.text.empty()) chip += ": " + ecosystem.state.text;
      chips.push_back(printableText(chip));
    }
    if (!chips.empty()) lines_.flow("    ", chips, "   ");
  }

  void health(const PanelContent::Health& health) {
    row(health.rollup, 0);
    for (const auto& component : health.components) row(component, componentIndent);
    lines_.blank();
  }

  void facts() {
    for (const auto& fact : content_.facts)
      lines_.hanging("  " + padded(fact.label, labelColumns_) + "  ", fact.value);
  }

  void notices() {
    if (content_.notices.empty()) return;
    lines_.blank();
    for (const auto& notice : content_.notices) lines_.paragraph(2, notice);
  }

  void footer() {
    std::vector<std::string> buttons;
    for (const auto* group : {&content_.footerButtons, &content_.moreButtons}) {
      for (const auto& button : *group) buttons.push_back(mark(button));
    }
    if (buttons.empty()) return;
    lines_.blank();
    lines_.flow("  ", buttons, buttonGap);
  }

  const PanelContent& content_;
  ButtonMarks marks_;
  std::size_t labelColumns_ = 0;
  std::size_t buttonNumber_ = 0;
  TextLines lines_;
};

}  // namespace

std::string panelText(const PanelContent& content, ButtonMarks marks) {
  return PanelPrinter(content, marks).print();
}

}  // namespace ostrel
