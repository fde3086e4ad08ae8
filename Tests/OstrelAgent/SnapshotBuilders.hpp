#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "OstrelAgent/Panel/RowState.hpp"
#include "OstrelAgent/Status/HealthComponents.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/TimeTexts.hpp"
#include "Tests/Fakes/FakeTimeFormat.hpp"

namespace ostrel {

/// Snapshots and their parts, for tests to vary.
namespace builders {

using namespace std::chrono_literals;

/// 10:00 of a day in English short style "1/2/25".
inline constexpr Date now = std::chrono::sys_days(std::chrono::year(2025) / 1 / 2) + 10h;

/// A component as it is reported.
inline Snapshot::ComponentHealth health(std::string state, std::string severity = "", std::string code = "",
                                        std::vector<std::string> params = {}) {
  Snapshot::ComponentHealth health;
  health.state = std::move(state);
  health.severity = std::move(severity);
  health.code = std::move(code);
  health.params = std::move(params);
  return health;
}

/// A protected device: three ecosystems enforced, everything reported as ok.
inline Snapshot healthy() {
  Snapshot snapshot;
  snapshot.daemonListening = snapshot.caTrusted = snapshot.sysextActive = true;
  snapshot.tokenPresent = snapshot.enrolled = snapshot.egressLockEnabled = true;
  snapshot.tokenMasked = "ost_…9f";
  snapshot.version = "2.4.0";
  snapshot.verdict = "protected";
  for (const auto& component : healthComponents) snapshot.*component.health = health("ok");
  snapshot.guardEcosystems = {{"npm", "enforced"}, {"go", "enforced"}, {"pypi", "enforced"}};
  snapshot.guardFeatureState = "enforced";
  snapshot.lastCheckinSuccess = now - 5min;
  return snapshot;
}

/// A row in one word and its text: "warn not trusted".
inline std::string describe(const RowState& state) {
  return std::string(nameOf(state.kind)) + ' ' + state.text;
}

/// English times of UTC.
inline TimeTexts times() {
  return {[](Date date) { return FakeTimeFormat().clockTime(date); },
          [](Date date) { return FakeTimeFormat().shortDate(date); }};
}

/// A translation that lasts as long as the scope.
class Translated {
 public:
  explicit Translated(std::initializer_list<StringsEntries::value_type> entries)
      : Translated(StringsEntries(entries)) {}
  explicit Translated(const StringsEntries& entries) { Copy::install(Copy::translation(entries).table); }
  ~Translated() { Copy::install({}); }
  Translated(const Translated&) = delete;
  Translated& operator=(const Translated&) = delete;
};

}  // namespace builders

}  // namespace ostrel
