#include "Shells/Desktop/Views/Panel/PanelValues.hpp"

#include <QStringList>

namespace ostrel {

namespace {

using statekind::kindOf;

/// The texts that are not empty, with a separator between them.
QString joined(QStringList texts, const QString& separator) {
  texts.removeAll(QString());
  return texts.join(separator);
}

/// The name is Latin; a state that runs from right to left needs marks to keep the order name, state.
QString chipText(const QString& name, const QString& state) {
  if (!state.isRightToLeft()) return joined({name, state}, QStringLiteral(" · "));
  return QStringLiteral("\u200F\u2068%1\u2069 · %2").arg(name, state);
}

QString accessibleName(const QStringList& texts) { return joined(texts, QStringLiteral(", ")); }

}  // namespace

QString textOf(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

RowValue valueOf(const PanelContent::Row& row) {
  const auto label = textOf(row.label);
  const auto text = textOf(row.state.text);
  const auto note = row.isNoteShownOnCard ? QString() : textOf(row.note);
  return {kindOf(row.state.kind),       row.state.wantsAttention(), label, text, note,
          accessibleName({label, text})};
}

RowValue valueOf(const PanelContent::Ecosystem& ecosystem) {
  const auto name = textOf(ecosystem.name);
  const auto state = textOf(ecosystem.state.text);
  return {kindOf(ecosystem.state.kind), ecosystem.state.wantsAttention(), chipText(name, state), {}, {},
          accessibleName({name, state})};
}

RowValue valueOf(const PanelContent::Fact& fact) {
  const auto label = textOf(fact.label);
  const auto value = textOf(fact.value);
  return {kindOf(RowState::Case::info), false, label, value, {}, accessibleName({label, value})};
}

RowValue valueOf(const std::optional<RowState>& status) {
  if (!status) return {};
  const auto text = textOf(status->text);
  return {kindOf(status->kind), status->wantsAttention(), {}, text, {}, text};
}

ButtonValue valueOf(const std::optional<PanelButton>& button) {
  if (!button) return {};
  return {textOf(button->title), button->isEnabled, *button};
}

CardValue valueOf(const PanelContent::Update& update) {
  CardValue card;
  card.kind = kindOf(update.state.kind);
  card.title = textOf(update.state.text);
  card.text = textOf(update.version);
  card.detail = textOf(update.belowMinimum);
  card.action = joined({textOf(update.installing), textOf(update.protectionStaysOn)}, QStringLiteral(" "));
  card.accessibleName = accessibleName({card.title, card.text});
  card.accessibleDescription = joined({card.detail, card.action}, QStringLiteral(" "));
  card.button = valueOf(update.button);
  return card;
}

CardValue valueOf(const AttentionItem& item) {
  CardValue card;
  card.kind = kindOf(item.state.kind);
  card.title = textOf(item.title);
  card.text = textOf(item.stateText());
  card.detail = textOf(item.detail);
  card.action = textOf(item.action);
  card.accessibleName = accessibleName({card.title, card.text});
  card.accessibleDescription = joined({card.detail, card.action}, QStringLiteral(" "));
  card.button = valueOf(item.button);
  return card;
}

HeaderValue valueOf(const PanelContent::Header& header) {
  const auto word = textOf(header.word);
  const auto deadline = textOf(header.deadlineLine.value_or(""));
  return {kindOf(header.tint), word, deadline, accessibleName({word, deadline})};
}

ProtectionValue valueOf(const std::optional<PanelContent::Protection>& protection) {
  if (!protection) return {};
  return {true,
          valueOf(protection->guard),
          textOf(protection->offNote),
          textOf(protection->noEcosystems),
          valueOf(protection->egressLock),
          valueOf(protection->containers)};
}

HealthValue valueOf(const std::optional<PanelContent::Health>& health) {
  if (!health) return {};
  return {true, health->startsExpanded, valueOf(health->rollup)};
}

}  // namespace ostrel
