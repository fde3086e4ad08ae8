#include "OstrelAgent/Panel/PanelHeader.hpp"

#include <algorithm>
#include <vector>

#include "OstrelAgent/Status/HealthComponents.hpp"

namespace ostrel {

namespace {

using Health = Snapshot::ComponentHealth;

std::vector<const Health*> amberComponents(const Snapshot& snapshot) {
  std::vector<const Health*> amber;
  for (const auto& component : healthComponents) {
    const auto* health = &(snapshot.*component.health);
    if (health->severity == "yellow") amber.push_back(health);
  }
  return amber;
}

}  // namespace

Settling Settling::read(const ProtectionVerdict& verdict, const Snapshot& snapshot, Date now) {
  if (verdict.kind != ProtectionVerdict::Case::needsAttention) return {Case::notApplicable, std::nullopt};
  const auto amber = amberComponents(snapshot);
  if (amber.empty()) return {Case::notApplicable, std::nullopt};
  const auto heals = [](const Health* health) { return health->selfHealing; };
  if (!std::ranges::all_of(amber, heals)) return {Case::needsAction, std::nullopt};
  auto latest = Date::min();
  for (const auto* health : amber) {
    if (!health->expectedClearBy) return {Case::undated, std::nullopt};
    if (*health->expectedClearBy <= now) return {Case::overdue, std::nullopt};
    latest = std::max(latest, *health->expectedClearBy);
  }
  return {Case::settling, latest};
}

PanelHeaderReading PanelHeaderReading::read(const ProtectionVerdict& verdict, const Snapshot& snapshot,
                                            Date now, const TimeTexts& times) {
  auto settling = Settling::read(verdict, snapshot, now);
  if (!settling.date) return {settling, verdict.headerText(), std::nullopt};
  return {settling, std::string(Copy::panelHeaderSettling.text()),
          Copy::panelHeaderDeadline.with(times.clockTime(*settling.date))};
}

}  // namespace ostrel
