#include "Tools/PreviewJson.hpp"

#include <nlohmann/json.hpp>

#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "Tools/PreviewValues.hpp"

namespace ostrel {

namespace {

using namespace previewvalues;

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

Json json(const PanelContent::Fact& fact) { return {{"label", fact.label}, {"value", fact.value}}; }

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
