#include "Shells/Console/AgentWindowText.hpp"

#include <algorithm>
#include <string_view>
#include <utility>
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
  WindowPrinter(const Content& content, ButtonMarks marks) : content_(content), marks_(marks) {}

  AgentWindowText print() {
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
    return {lines_.take() + below_, buttons_.take()};
  }

 private:
  void sidebar() {
    std::vector<std::string> items;
    for (const auto& section : content_.sidebar.sections) {
      for (const auto& item : section.items) {
        const auto mark = item.state ? statePrefix(item.state->kind) : std::string();
        items.push_back(item.page == content_.page ? "[" + mark + item.title + "]" : mark + item.title);
      }
    }
    lines_.flow("  ", items, "   ");
  }

  void facts(const Content::Facts& facts) {
    std::size_t width = 0;
    for (const auto& fact : facts) width = std::max(width, columns(fact.label));
    for (const auto& fact : facts) {
      auto value = fact.value + fact.addition;
      if (fact.button) value += "   " + buttons_.mark(*fact.button);
      lines_.hanging("  " + padded(fact.label, width) + "  ", value);
    }
    if (!facts.empty()) lines_.blank();
  }

  void card(const AttentionItem& card) {
    writeCard(lines_, card, card.button ? buttons_.mark(*card.button) : std::string());
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
    auto* buttons = marks_ == ButtonMarks::numbered ? &buttons_ : nullptr;
    below_ = containersListText(page) + containerDetailText(page, buttons) + "\n";
    below_ += containersInsideText(page, buttons);
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
    lines_.paragraph(2, page.installing);
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
    if (page.authorizationButton) lines_.line("  " + buttons_.mark(*page.authorizationButton));
    toggle(page.master, {AllNotifySwitch{!page.master.isOn}, page.master.isEnabled});
    lines_.paragraph(2, page.lede);
    lines_.blank();
    if (!page.caption.empty()) lines_.line(page.caption);
    for (const auto& runtime : page.runtimes) {
      toggle(runtime, {NotifySwitch{runtime.label, !runtime.isOn}, runtime.isEnabled});
    }
  }

  void toggle(const Content::Notifications::Switch& toggle, WindowButton button) {
    lines_.hanging("  " + buttons_.switchMark(toggle.isOn, std::move(button)), toggle.label);
  }

  void show(const Content::Help& page) {
    lines_.paragraph(2, page.lede);
    lines_.blank();
    std::vector<std::string> buttons;
    for (const auto& button : page.buttons) buttons.push_back(buttons_.mark(button));
    if (!buttons.empty()) lines_.flow("  ", buttons, "   ");
    for (const auto& notice : page.notices) lines_.hanging("  " + statePrefix(notice.kind), notice.text);
  }

  const Content& content_;
  const ButtonMarks marks_;
  WindowButtons buttons_{marks_};
  TextLines lines_;
  std::string below_;
};

}  // namespace

AgentWindowText agentWindowText(const AgentWindowContent& content, ButtonMarks marks) {
  return WindowPrinter(content, marks).print();
}

}  // namespace ostrel
