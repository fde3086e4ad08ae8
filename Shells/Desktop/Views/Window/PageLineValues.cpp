#include "Shells/Desktop/Views/Window/PageLineValues.hpp"

#include <QStringList>

namespace ostrel {

namespace {

using statekind::kindOf;
using Content = AgentWindowContent;

constexpr double blockGap = 12;
constexpr double captionGap = 16;
constexpr double belowCaption = 6;
constexpr double noteGap = 8;

QString joined(QStringList texts, const QString& separator = QStringLiteral(", ")) {
  texts.removeAll(QString());
  return texts.join(separator);
}

/// Writes the lines of one page from top to bottom.
class LineWriter {
 public:
  LineWriter(AgentPage page, const FoldedCards& isOpened)
      : prefix_(QString::number(static_cast<int>(page)) + QLatin1Char('/')), isOpened_(isOpened) {}

  std::vector<ValueList::Entry> take() {
    endList();
    std::vector<ValueList::Entry> entries;
    entries.reserve(lines_.size());
    for (auto& [key, line] : lines_)
      entries.push_back({std::move(key), QVariant::fromValue(std::move(line))});
    return entries;
  }

  void operator()(std::monostate) {}
  void operator()(const ContainersPageContent&) {}

  void operator()(const Content::Ecosystems& page) {
    if (page.card) card(*page.card);
    if (page.rollup) state(page.rollup->id, page.rollup->label, page.rollup->state, false);
    endList();
    for (const auto& row : page.rows) state(row.name, row.name, row.state, page.card.has_value());
    endList();
    note(page.noEcosystems);
    note(page.offNote);
    facts(page.facts);
  }
  void operator()(const Content::EgressLock& page) {
    card(page.card);
    endList();
    facts(page.facts);
  }
  void operator()(const Content::Identity& page) {
    facts(page.device);
    facts(page.checkin);
    note(page.notice);
    facts(page.version);
    note(page.installing);
  }
  void operator()(const Content::Health& page) {
    facts(page.facts);
    for (const auto& component : page.components) this->component(component);
  }
  void operator()(const Content::Notifications& page) {
    if (!page.authorization.empty()) {
      auto& line = listed(linetype::Fact, QStringLiteral("authorization"));
      line.label = textOf(page.authorization);
      line.accessibleName = line.label;
      if (const auto& button = page.authorizationButton) {
        line.button.title = textOf(button->title);
        line.pageAction = button->action;
        line.isPrimary = button->action == PageAction::allowNotifications;
      }
    }
    endList();
    toggle(QStringLiteral("master"), {}, page.master);
    endList();
    note(page.lede);
    if (!page.caption.empty()) {
      auto& line = add(linetype::Caption, QStringLiteral("caption"), captionGap);
      line.text = textOf(page.caption);
      nextGap_ = belowCaption;
    }
    for (const auto& runtime : page.runtimes) {
      toggle(QStringLiteral("runtime.") + textOf(runtime.label), textOf(runtime.label), runtime);
    }
  }
  void operator()(const Content::Help& page) {
    add(linetype::Lede, QStringLiteral("lede"), blockGap).text = textOf(page.lede);
    auto& buttons = add(linetype::Buttons, QStringLiteral("buttons"), blockGap);
    for (const auto& button : page.buttons) {
      buttons.buttons.append(QVariant::fromValue(valueOf(std::optional(button))));
    }
    for (const auto& notice : page.notices) {
      auto& line = add(linetype::Notice, QStringLiteral("notice.") + textOf(notice.text), blockGap);
      line.kind = kindOf(notice.kind);
      line.text = textOf(notice.text);
    }
  }

 private:
  PageLineValue& add(linetype::Type type, const QString& key, double gap) {
    lines_.push_back({prefix_ + key, {}});
    auto& line = lines_.back().second;
    line.type = type;
    line.gap = lines_.size() == 1 ? blockGap : gap;
    return line;
  }

  /// A line of the current list, which begins with it where none is open.
  PageLineValue& listed(linetype::Type type, const QString& key) {
    const bool isFirst = !hasList_;
    if (!isFirst) lines_.back().second.isLast = false;
    auto& line = add(type, key, isFirst ? nextGap_ : 0);
    line.isListed = true;
    line.isFirst = isFirst;
    hasList_ = true;
    nextGap_ = blockGap;
    return line;
  }
  void endList() { hasList_ = false; }

  void state(const std::string& id, const std::string& label, const RowState& state, bool isDim) {
    auto& line = listed(linetype::State, QStringLiteral("state.") + textOf(id));
    line.kind = kindOf(state.kind);
    line.label = textOf(label);
    line.text = textOf(state.text);
    line.isDim = isDim;
    line.accessibleName = joined({line.label, line.text});
  }

  void facts(const Content::Facts& facts) {
    for (const auto& fact : facts) this->fact(fact);
    endList();
  }

  void fact(const Content::Fact& fact) {
    auto& line = listed(linetype::Fact, QStringLiteral("fact.") + textOf(fact.label));
    line.kind = kindOf(fact.kind);
    line.label = textOf(fact.label);
    line.text = textOf(fact.value);
    line.addition = textOf(fact.addition);
    line.isCode = fact.isCode;
    line.button = valueOf(fact.button);
    // A check-in that fails: the button tries again.
    line.isPrimary =
        fact.button && fact.button->action == PanelAction::checkNow && fact.kind == RowState::Case::warn;
    line.accessibleName = joined({line.label, line.text + line.addition});
  }

  PageLineValue& card(const AttentionItem& item) {
    auto& line = listed(linetype::Card, QStringLiteral("card.") + textOf(item.id));
    line.id = textOf(item.id);
    line.kind = kindOf(item.state.kind);
    line.label = textOf(item.title);
    line.text = textOf(item.stateText());
    line.detail = textOf(item.detail);
    line.action = textOf(item.action);
    line.button = valueOf(item.button);
    line.isPrimary = item.button && item.state.wantsAttention() && !std::exchange(hasPrimary_, true);
    line.accessibleName = joined({line.label, textOf(item.state.text)});
    return line;
  }

  void component(const Content::Health::Component& component) {
    auto& line = card(component.card);
    line.isFoldable = true;
    line.isOpen = isOpened_.value(line.id, component.startsOpen);
    // The detail of a closed card is not seen.
    const auto& state = component.card.state.text;
    if (!line.isOpen && state != component.card.title) line.text = textOf(state);
    for (const auto& fact : component.facts) {
      line.facts.append(QVariant::fromValue(FactValue{textOf(fact.label), textOf(fact.value), fact.isCode}));
    }
  }

  void toggle(const QString& key, const QString& id, const Content::Notifications::Switch& toggle) {
    auto& line = listed(linetype::Switch, key);
    line.id = id;
    line.label = textOf(toggle.label);
    line.isOn = toggle.isOn;
    line.isEnabled = toggle.isEnabled;
  }

  void note(const std::string& text) {
    if (text.empty()) return;
    add(linetype::Note, QStringLiteral("note.") + QString::number(++notes_), noteGap).text = textOf(text);
  }

  QString prefix_;
  const FoldedCards& isOpened_;
  std::vector<std::pair<QString, PageLineValue>> lines_;
  bool hasList_ = false;
  bool hasPrimary_ = false;
  double nextGap_ = blockGap;
  int notes_ = 0;
};

}  // namespace

PageButtonValue valueOf(const std::optional<PageButton>& button, bool isPrimary) {
  if (!button) return {};
  return {textOf(button->title), isPrimary, button->action};
}

std::vector<ValueList::Entry> pageLines(const AgentWindowContent& content, const FoldedCards& isOpened) {
  LineWriter writer(content.page, isOpened);
  std::visit(writer, content.body);
  return writer.take();
}

}  // namespace ostrel
