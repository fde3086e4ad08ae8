#pragma once

#include <nlohmann/json.hpp>
#include <optional>

#include "OstrelAgent/Window/AgentWindowContent.hpp"

// The values that panel and agent window share, as JSON. `json` is overloaded in this namespace, so that
// lists of any of these values find it.
namespace ostrel {

using PreviewJson = nlohmann::ordered_json;

template <class Value, class Function>
PreviewJson jsonOrNull(const std::optional<Value>& value, Function json) {
  return value ? json(*value) : PreviewJson(nullptr);
}

inline PreviewJson json(const PanelButton& button) {
  PreviewJson object = {{"title", button.title}, {"action", ostrel::nameOf(button.action)}};
  if (button.page) object["page"] = ostrel::nameOf(*button.page);
  object["enabled"] = button.isEnabled;
  return object;
}

inline PreviewJson json(const RowState& state) {
  return {{"case", ostrel::nameOf(state.kind)}, {"text", state.text}};
}

inline PreviewJson json(const PanelContent::Row& row) {
  return {{"id", row.id},
          {"label", row.label},
          {"case", ostrel::nameOf(row.state.kind)},
          {"text", row.state.text},
          {"note", row.note}};
}

inline PreviewJson json(const PanelContent::Ecosystem& ecosystem) {
  return {
      {"id", ecosystem.name}, {"case", ostrel::nameOf(ecosystem.state.kind)}, {"text", ecosystem.state.text}};
}

inline PreviewJson json(const AttentionItem& card) {
  return {{"id", card.id},
          {"case", ostrel::nameOf(card.state.kind)},
          {"text", card.state.text},
          {"title", card.title},
          {"detail", card.detail},
          {"action", card.action},
          {"button", jsonOrNull(card.button, [](const auto& button) { return json(button); })}};
}

inline PreviewJson json(const PanelContent::Header& header) {
  return {
      {"word", header.word},
      {"deadline_line", jsonOrNull(header.deadlineLine, [](const auto& line) { return PreviewJson(line); })},
      {"symbol", header.symbol},
      {"tint", ostrel::nameOf(header.tint)}};
}

template <class Items>
PreviewJson jsonList(const Items& items) {
  PreviewJson array = PreviewJson::array();
  for (const auto& item : items) array.push_back(json(item));
  return array;
}

}  // namespace ostrel
