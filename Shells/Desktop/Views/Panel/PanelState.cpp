#include "Shells/Desktop/Views/Panel/PanelState.hpp"

#include <QStringList>

#include "Shells/Desktop/Views/Common/Change.hpp"

namespace ostrel {

namespace {

using Entries = std::vector<ValueList::Entry>;

QVariant variantOf(const auto& item) { return QVariant::fromValue(valueOf(item)); }

QString keyOf(const PanelButton& button) {
  const int page = button.page ? static_cast<int>(*button.page) : -1;
  return QStringLiteral("%1.%2").arg(static_cast<int>(button.action)).arg(page);
}

Entries rows(const std::vector<PanelContent::Row>& rows) {
  Entries entries;
  for (const auto& row : rows) entries.push_back({textOf(row.id), variantOf(row)});
  return entries;
}

Entries chips(const std::vector<PanelContent::Ecosystem>& ecosystems) {
  Entries entries;
  for (const auto& ecosystem : ecosystems) entries.push_back({textOf(ecosystem.name), variantOf(ecosystem)});
  return entries;
}

Entries facts(const std::vector<PanelContent::Fact>& facts) {
  Entries entries;
  for (const auto& fact : facts) entries.push_back({textOf(fact.label), variantOf(fact)});
  return entries;
}

Entries buttons(const std::vector<PanelButton>& buttons) {
  Entries entries;
  for (const auto& button : buttons)
    entries.push_back({keyOf(button), variantOf(std::optional<PanelButton>(button))});
  return entries;
}

Entries notices(const std::vector<std::string>& notices) {
  Entries entries;
  for (const auto& notice : notices) entries.push_back({textOf(notice), textOf(notice)});
  return entries;
}

/// The update comes first.
Entries cards(const PanelContent& content) {
  Entries entries;
  if (content.update) entries.push_back({QStringLiteral("/update"), variantOf(*content.update)});
  for (const auto& card : content.cards) entries.push_back({textOf(card.id), variantOf(card)});
  return entries;
}

QString titles(const std::vector<PanelButton>& buttons) {
  QStringList titles;
  for (const auto& button : buttons) titles.append(textOf(button.title));
  return titles.join(QStringLiteral(", "));
}

}  // namespace

bool PanelState::show(const PanelContent& content) {
  if (content == content_) return false;
  content_ = content;
  change(*this, isRightToLeft_, content.direction == TextDirection::rightToLeft,
         &PanelState::isRightToLeftChanged);
  change(*this, header_, valueOf(content.header), &PanelState::headerChanged);
  change(*this, status_, valueOf(content.statusError), &PanelState::statusChanged);
  change(*this, protection_, valueOf(content.protection), &PanelState::protectionChanged);
  change(*this, health_, valueOf(content.health), &PanelState::healthChanged);
  change(*this, maxHeight_, content.maxHeight, &PanelState::maxHeightChanged);
  change(*this, moreName_, textOf(content.moreName), &PanelState::moreNameChanged);
  change(*this, moreTitles_, titles(content.moreButtons), &PanelState::moreTitlesChanged);
  cards_.show(::ostrel::cards(content));
  ecosystems_.show(
      chips(content.protection ? content.protection->ecosystems : std::vector<PanelContent::Ecosystem>()));
  components_.show(rows(content.health ? content.health->components : std::vector<PanelContent::Row>()));
  facts_.show(::ostrel::facts(content.facts));
  headerButtons_.show(buttons(content.headerButtons));
  footerButtons_.show(buttons(content.footerButtons));
  moreButtons_.show(buttons(content.moreButtons));
  notices_.show(::ostrel::notices(content.notices));
  return true;
}

}  // namespace ostrel
