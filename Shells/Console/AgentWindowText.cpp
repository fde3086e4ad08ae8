#include "Shells/Console/AgentWindowText.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

#include "Shells/Console/CardText.hpp"
#include "Shells/Console/ContainersText.hpp"
#include "Shells/Console/TextLines.hpp"

namespace ostrel {

namespace {

using Content = AgentWindowContent;

/// Writes the window from top to bottom.
class WindowPrinter {
 public:
  explicit WindowPrinter(const Content& content) : content_(content) {}

  std::string print() {
    const auto& header = content_.sidebar.header;
    auto word = header.word;
    if (!content_.sidebar.enrolment.empty()) word += " · " + content_.sidebar.enrolment;
    lines_.hanging(statePrefix(header.tint), word);
    sidebar();
    lines_.blank();
    lines_.line(content_.title);
    lines_.blank();
    if (content_.statusError) lines_.paragraph(2, content_.statusError->text);
    std::visit([this](const auto& body) { show(body); }, content_.body);
    return lines_.take() + below_;
  }

 private:
  void sidebar() {
    std::vector<std::string> items;
    for (const auto& section : content_.sidebar.sections) {
      for (const auto& item : section.items) {
        const auto mark = item.mark ? statePrefix(*item.mark) : std::string();
        items.push_back(item.page == content_.page ? "[" + mark + item.title + "]" : mark + item.title);
      }
    }
    lines_.flow("  ", items, "   ");
  }

  static std::string mark(const PanelButton& button) { return "[" + button.title + "]"; }

  void facts(const Content::Facts& facts) {
    std::size_t width = 0;
    for (const auto& fact : facts) width = std::max(width, columns(fact.label));
    for (const auto& fact : facts) {
      auto value = fact.value + fact.addition;
      if (fact.button) value += "   " + mark(*fact.button);
      lines_.hanging("  " + padded(fact.label, width) + "  ", value);
    }
    if (!facts.empty()) lines_.blank();
  }

  void card(const AttentionItem& card) {
    writeCard(lines_, card, card.button ? mark(*card.button) : std::string());
  }

  void show(std::monostate) {}

  void show(const Content::Ecosystems& page) {
    if (page.card) card(*page.card);
    if (page.rollup)
      lines_.hanging(statePrefix(page.rollup->state.kind),
                     page.rollup->label + ": " + page.rollup->state.text);
    lines_.blank();
    for (const auto& row : page.rows) {
      lines_.hanging("  " + statePrefix(row.state.kind),
                     row.state.text.empty() ? row.name : row.name + ": " + row.state.text);
    }
    lines_.paragraph(2, page.noEcosystems);
    lines_.paragraph(2, page.offNote);
    lines_.blank();
    facts(page.facts);
  }

  /// The containers page is written by functions of its own, behind what stands above it.
  void show(const ContainersPageContent& page) {
    if (content_.statusError) lines_.blank();
    below_ = containersListText(page) + containerDetailText(page) + "\n" + containersInsideText(page);
  }

  void show(const Content::EgressLock& page) {
    card(page.card);
    lines_.blank();
    facts(page.facts);
  }

  void show(const Content::Identity& page) {
    facts(page.device);
    facts(page.checkin);
    lines_.paragraph(2, page.notice);
    facts(page.version);
  }

  void show(const Content::Health& page) {
    facts(page.facts);
    for (const auto& component : page.components) {
      card(component.card);
      facts(component.facts);
    }
  }

  void show(const Content::Notifications& page) {
    lines_.paragraph(2, page.authorization);
    toggle(page.master);
    lines_.paragraph(2, page.lede);
    lines_.blank();
    if (!page.caption.empty()) lines_.line(page.caption);
    for (const auto& runtime : page.runtimes) toggle(runtime);
  }

  void toggle(const Content::Notifications::Switch& toggle) {
    lines_.hanging(toggle.isOn ? "  [x] " : "  [ ] ", toggle.label);
  }

  void show(const Content::Help& page) {
    lines_.paragraph(2, page.lede);
    lines_.blank();
    std::vector<std::string> buttons;
    for (const auto& button : page.buttons) buttons.push_back(mark(button));
    if (!buttons.empty()) lines_.flow("  ", buttons, "   ");
    for (const auto& notice : page.notices) lines_.hanging("  " + statePrefix(notice.kind), notice.text);
  }

  const Content& content_;
  TextLines lines_;
  std::string below_;
};

}  // namespace

std::string agentWindowText(const AgentWindowContent& content) { return WindowPrinter(content).print(); }

}  // namespace ostrel
