#include "Tools/PreviewJson.hpp"

#include <nlohmann/json.hpp>

#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "OstrelAgent/Window/AgentWindowContent.hpp"

namespace ostrel {

namespace {

using Json = nlohmann::ordered_json;

std::string_view nameOf(ProtectionVerdict::Case kind) {
  switch (kind) {
    case ProtectionVerdict::Case::isProtected:
      return "protected";
    case ProtectionVerdict::Case::protectedWithOff:
      return "protectedWithOff";
    case ProtectionVerdict::Case::needsAttention:
      return "needsAttention";
    case ProtectionVerdict::Case::notProtected:
      return "notProtected";
    case ProtectionVerdict::Case::notReported:
      return "notReported";
  }
  return {};
}

std::string_view nameOf(MenuBarBadge badge) {
  switch (badge) {
    case MenuBarBadge::dot:
      return "dot";
    case MenuBarBadge::square:
      return "square";
    case MenuBarBadge::octagon:
      return "octagon";
  }
  return {};
}

template <class Value, class Function>
Json orNull(const std::optional<Value>& value, Function json) {
  return value ? json(*value) : Json(nullptr);
}

Json json(const PanelButton& button) {
  Json object = {{"title", button.title}, {"action", ostrel::nameOf(button.action)}};
  if (button.page) object["page"] = ostrel::nameOf(*button.page);
  object["enabled"] = button.isEnabled;
  return object;
}

Json json(const RowState& state) { return {{"case", ostrel::nameOf(state.kind)}, {"text", state.text}}; }

Json json(const PanelContent::Row& row) {
  return {{"id", row.id},
          {"label", row.label},
          {"case", ostrel::nameOf(row.state.kind)},
          {"text", row.state.text},
          {"note", row.note}};
}

Json json(const PanelContent::Ecosystem& ecosystem) {
  return {
      {"id", ecosystem.name}, {"case", ostrel::nameOf(ecosystem.state.kind)}, {"text", ecosystem.state.text}};
}

Json json(const AttentionItem& card) {
  return {{"id", card.id},
          {"case", ostrel::nameOf(card.state.kind)},
          {"text", card.state.text},
          {"title", card.title},
          {"detail", card.detail},
          {"action", card.action},
          {"button", orNull(card.button, [](const auto& button) { return json(button); })}};
}

Json json(const PanelContent::Fact& fact) { return {{"label", fact.label}, {"value", fact.value}}; }

template <class Items>
Json list(const Items& items) {
  Json array = Json::array();
  for (const auto& item : items) array.push_back(json(item));
  return array;
}

Json json(const PanelContent::Header& header) {
  return {{"word", header.word},
          {"deadline_line", orNull(header.deadlineLine, [](const auto& line) { return Json(line); })},
          {"symbol", header.symbol},
          {"tint", ostrel::nameOf(header.tint)}};
}

Json json(const PanelContent::Update& update) {
  return {{"case", ostrel::nameOf(update.state.kind)},
          {"text", update.state.text},
          {"version", update.version},
          {"below_minimum", update.belowMinimum},
          {"button", orNull(update.button, [](const auto& button) { return json(button); })}};
}

Json json(const PanelContent::Protection& protection) {
  return {{"guard", json(protection.guard)},
          {"ecosystems", list(protection.ecosystems)},
          {"off_note", protection.offNote},
          {"no_ecosystems", protection.noEcosystems},
          {"egress_lock", json(protection.egressLock)},
          {"containers", json(protection.containers)}};
}

Json json(const PanelContent::Health& health) {
  return {{"rollup", json(health.rollup)},
          {"startsExpanded", health.startsExpanded},
          {"components", list(health.components)}};
}

}  // namespace

Json previewJson(const Snapshot& snapshot, const PanelContent& content) {
  const auto verdict = ProtectionVerdict::of(snapshot);
  const auto sign = VerdictSymbols::of(verdict);
  const auto any = [](const auto& value) { return json(value); };
  return {{"verdict", nameOf(verdict.kind)},
          {"off_by_policy", snapshot.offByPolicyCount()},
          {"tooltip", verdict.menuBarDescription()},
          {"badge", nameOf(sign.badge)},
          {"symbol", sign.symbol},
          {"header", json(content.header)},
          {"status_error", orNull(content.statusError, any)},
          {"update", orNull(content.update, any)},
          {"cards", list(content.cards)},
          {"protection", orNull(content.protection, any)},
          {"health", orNull(content.health, any)},
          {"facts", list(content.facts)},
          {"buttons", list(content.buttons())}};
}

}  // namespace ostrel
