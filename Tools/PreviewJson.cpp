#include "Tools/PreviewJson.hpp"

#include <nlohmann/json.hpp>

#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "Tools/PreviewValues.hpp"

namespace ostrel {

namespace {

using Json = PreviewJson;

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

}  // namespace

static Json json(const PanelContent::Fact& fact) { return {{"label", fact.label}, {"value", fact.value}}; }

static Json json(const PanelContent::Update& update) {
  return {{"case", ostrel::nameOf(update.state.kind)},
          {"text", update.state.text},
          {"version", update.version},
          {"below_minimum", update.belowMinimum},
          {"button", jsonOrNull(update.button, [](const auto& button) { return json(button); })}};
}

static Json json(const PanelContent::Protection& protection) {
  return {{"guard", json(protection.guard)},
          {"ecosystems", jsonList(protection.ecosystems)},
          {"off_note", protection.offNote},
          {"no_ecosystems", protection.noEcosystems},
          {"egress_lock", json(protection.egressLock)},
          {"containers", json(protection.containers)}};
}

static Json json(const PanelContent::Health& health) {
  return {{"rollup", json(health.rollup)},
          {"startsExpanded", health.startsExpanded},
          {"components", jsonList(health.components)}};
}

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
          {"status_error", jsonOrNull(content.statusError, any)},
          {"update", jsonOrNull(content.update, any)},
          {"cards", jsonList(content.cards)},
          {"protection", jsonOrNull(content.protection, any)},
          {"health", jsonOrNull(content.health, any)},
          {"facts", jsonList(content.facts)},
          {"buttons", jsonList(content.buttons())}};
}

}  // namespace ostrel
