#include "OstrelAgent/Panel/GuardRow.hpp"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

using Health = Snapshot::ComponentHealth;

bool isYellow(const Health& health) { return health.severity == "yellow"; }

GuardFailure notProtecting(std::string_view consequence, const Health& component) {
  return {std::string(Copy::guardRollupNotProtecting.text()), std::string(consequence), isYellow(component),
          component};
}

std::string credentialConsequence(const Health& credential) {
  if (credential.detail.empty()) return Copy::consequenceCredential("");
  return Copy::consequenceCredential(
      Copy::componentDetail(credential.code, credential.detail, credential.params));
}

/// Pending trust is amber even when the daemon gives no severity.
GuardFailure setupUnfinished(const Health& deviceCA) {
  return {std::string(Copy::guardRollupSetupUnfinished.text()),
          std::string(Copy::guardConsequenceTrustPending.text()),
          isYellow(deviceCA) || deviceCA.severity.empty(), deviceCA};
}

int rank(const StatusComponent& row) {
  switch (row.state.kind) {
    case RowState::Case::bad:
      return 0;
    case RowState::Case::warn:
      return 1;
    case RowState::Case::off:
      return 2;
    case RowState::Case::info:
      return 3;
    case RowState::Case::ok:
      return 4;
  }
  return 4;
}

/// For each unprotected ecosystem, the setting of the first gap that causes it.
std::unordered_map<std::string_view, std::string_view> firstGaps(const Snapshot& snapshot) {
  std::unordered_map<std::string_view, std::string_view> settings;
  for (const auto& gap : snapshot.trustGaps) {
    for (const auto& ecosystem : gap.ecosystems) settings.try_emplace(ecosystem, gap.env);
  }
  return settings;
}

RowState ecosystemState(const Snapshot::GuardEcosystem& ecosystem,
                        const std::unordered_map<std::string_view, std::string_view>& gaps) {
  if (const auto gap = gaps.find(ecosystem.name); gap != gaps.end()) {
    return RowState::bad(Copy::guardEcoNotCovered.with(gap->second));
  }
  if (ecosystem.state == "off_by_policy") return RowState::off(Copy::guardRollupOffByPolicy.text());
  return RowState::ok("");
}

std::size_t countOf(RowState::Case kind, const std::vector<StatusComponent>& rows) {
  return static_cast<std::size_t>(
      std::ranges::count_if(rows, [&](const auto& row) { return row.state.kind == kind; }));
}

}  // namespace

std::optional<GuardFailure> guardFailure(const Snapshot& snapshot) {
  if (!snapshot.daemonListening) {
    return notProtecting(Copy::guardConsequenceDaemonDown.text(), snapshot.daemon);
  }
  if (snapshot.sysext.code == "SYSEXT_PROXY_DISABLED") {
    return notProtecting(Copy::guardConsequenceFilterOff.text(), snapshot.sysext);
  }
  if (!snapshot.sysextActive) {
    return notProtecting(Copy::guardConsequenceSessionInactive.text(), snapshot.sysext);
  }
  if (!snapshot.caTrusted && snapshot.caTrustPending) return setupUnfinished(snapshot.deviceCA);
  if (!snapshot.caTrusted) {
    return notProtecting(Copy::guardConsequenceCaUntrusted.text(), snapshot.deviceCA);
  }
  if (snapshot.captureSet.state == "broken") {
    return notProtecting(Copy::guardConsequenceCaptureSetDiverged.text(), snapshot.captureSet);
  }
  if (snapshot.credential.state == "broken") {
    return notProtecting(credentialConsequence(snapshot.credential), snapshot.credential);
  }
  return std::nullopt;
}

std::vector<StatusComponent> ecosystemRows(const Snapshot& snapshot) {
  std::vector<StatusComponent> rows;
  rows.reserve(snapshot.guardEcosystems.size());
  const auto gaps = firstGaps(snapshot);
  for (const auto& ecosystem : snapshot.guardEcosystems) {
    rows.push_back({ecosystem.name, ecosystemState(ecosystem, gaps), {}, std::nullopt});
  }
  std::ranges::sort(rows, [](const auto& a, const auto& b) {
    return std::forward_as_tuple(rank(a), a.id) < std::forward_as_tuple(rank(b), b.id);
  });
  return rows;
}

std::vector<std::string> offEcosystemNames(const Snapshot& snapshot) {
  std::vector<std::string> names;
  for (const auto& ecosystem : snapshot.guardEcosystems) {
    if (ecosystem.state == "off_by_policy") names.push_back(ecosystem.name);
  }
  std::ranges::sort(names);
  return names;
}

RowState guardRollup(const std::optional<GuardFailure>& failure,
                     const std::vector<StatusComponent>& ecosystems) {
  if (failure) return failure->isDegraded ? RowState::warn(failure->rollup) : RowState::bad(failure->rollup);
  if (ecosystems.empty()) return RowState::info(Copy::stateNotReported.text());
  const auto total = ecosystems.size();
  const auto bad = countOf(RowState::Case::bad, ecosystems);
  const auto ok = countOf(RowState::Case::ok, ecosystems);
  if (bad > 0) return RowState::bad(Copy::rollupNotCovered(bad, total));
  if (ok == 0) return RowState::off(Copy::guardRollupOffByPolicy.text());
  if (ok == total) return RowState::ok(Copy::guardRollupAllEnforced.with(total));
  return RowState::ok(Copy::rollupEnforced(ok, total));
}

RowState guardRollup(const Snapshot& snapshot) {
  return guardRollup(guardFailure(snapshot), ecosystemRows(snapshot));
}

}  // namespace ostrel
