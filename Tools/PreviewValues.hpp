#pragma once

#include <nlohmann/json.hpp>
#include <optional>

#include "OstrelAgent/Window/AgentWindowContent.hpp"

/// The values that panel and agent window share, as JSON.
namespace ostrel::previewvalues {

using Json = nlohmann::ordered_json;

template <class Value, class Function>
Json orNull(const std::optional<Value>& value, Function json) {
  return value ? json(*value) : Json(nullptr);
}

inline Json json(const PanelButton& button) {
  Json object = {{"title", button.title}, {"action", ostrel::nameOf(button.action)}};
  if (button.page) object["page"] = ostrel::nameOf(*button.page);
  object["enabled"] = button.isEnabled;
  return object;
}

inline Json json(const RowState& state) { return {{"case", ostrel::nameOf(state.kind)}, {"text", state.text}}; }

inline Json json(const PanelContent::Row& row) {
  return {{"id", row.id},
          {"label", row.label},
          {"case", ostrel::nameOf(row.state.kind)},
          {"text", row.state.text},
          {"note", row.note}};
}

inline Json json(const PanelContent::Ecosystem& ecosystem) {
  return {
      {"id", ecosystem.name}, {"case", ostrel::nameOf(ecosystem.state.kind)}, {"text", ecosystem.state.text}};
}

inline Json json(const AttentionItem& card) {
  return {{"id", card.id},
          {"case", ostrel::nameOf(card.state.kind)},
          {"text", card.state.text},
          {"title", card.title},
          {"detail", card.detail},
          {"action", card.action},
          {"button", orNull(card.button, [](const auto& button) { return json(button); })}};
}

inline Json json(const PanelContent::Header& header) {
  return {{"word", header.word},
          {"deadline_line", orNull(header.deadlineLine, [](const auto& line) { return Json(line); })},
          {"symbol", header.symbol},
          {"tint", ostrel::nameOf(header.tint)}};
}

template <class Items>
Json list(const Items& items) {
  Json array = Json::array();
  for (const auto& item : items) array.push_back(json(item));
  return array;
}

}  // namespace ostrel::previewvalues
