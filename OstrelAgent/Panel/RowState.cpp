#include "OstrelAgent/Panel/RowState.hpp"

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

std::string_view nameOf(RowState::Case kind) {
  switch (kind) {
    case RowState::Case::ok:
      return "ok";
    case RowState::Case::warn:
      return "warn";
    case RowState::Case::bad:
      return "bad";
    case RowState::Case::info:
      return "info";
    case RowState::Case::off:
      return "off";
  }
  return {};
}

RowState weighed(std::string_view text, const Snapshot::ComponentHealth& health) {
  if (health.severity == "yellow") return RowState::warn(text);
  if (health.severity == "info") return RowState::off(text);
  return RowState::bad(text);
}

RowState healthState(const Snapshot::ComponentHealth& health, std::string_view ok, std::string_view broken) {
  if (health.state == "broken") return weighed(broken, health);
  if (health.state == "ok") return RowState::ok(ok);
  if (health.state.empty()) return RowState::info(Copy::stateNotReported.text());
  return weighedUnlessUncertain(health.state, health);
}

RowState weighedUnlessUncertain(std::string_view text, const Snapshot::ComponentHealth& health) {
  if (health.state != "broken" && health.severity.empty()) return RowState::info(text);
  return weighed(text, health);
}

}  // namespace ostrel
