#include "OstrelAgent/Status/Snapshot.hpp"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <type_traits>

#include "OstrelAgent/Status/HealthComponents.hpp"
#include "OstrelAgent/Status/RFC3339.hpp"

namespace ostrel {

namespace {

std::optional<Date> time(const std::optional<std::string>& text) {
  return text ? parseRFC3339(*text) : std::nullopt;
}

Snapshot::ComponentHealth condensed(const StatusReport::Health::Component& component) {
  return {.state = component.state,
          .detail = component.detail.value_or(""),
          .code = component.code.value_or(""),
          .severity = component.severity.value_or(""),
          .selfHealing = component.selfHealing.value_or(false),
          .expectedClearBy = time(component.expectedClearBy),
          .params = component.params.value_or(std::vector<std::string>())};
}

/// The members of a snapshot; a new member does not compile until it is listed here.
[[maybe_unused]] auto membersOf(const Snapshot& snapshot) {
  const auto& [m0, m1, m2, m3, m4, m5, m6, m7, m8, m9, m10, m11, m12, m13, m14, m15, m16, m17, m18, m19, m20,
               m21, m22, m23, m24, m25, m26, m27, m28, m29, m30] = snapshot;
  return std::tie(m0, m1, m2, m3, m4, m5, m6, m7, m8, m9, m10, m11, m12, m13, m14, m15, m16, m17, m18, m19,
                  m20, m21, m22, m23, m24, m25, m26, m27, m28, m29, m30);
}

template <class... Members>
constexpr std::size_t componentsAmong(std::type_identity<std::tuple<Members&...>>) {
  return (0 + ... + (std::is_same_v<Members, const Snapshot::ComponentHealth> ? 1 : 0));
}

using SnapshotMembers = std::invoke_result_t<decltype(membersOf), const Snapshot&>;
static_assert(componentsAmong(std::type_identity<SnapshotMembers>()) == std::size(healthComponents),
              "every component of a snapshot has a row in the table of components");

/// A setting that the daemon could not check is not a gap.
bool isGap(const StatusReport::Health::Knob& knob) { return !knob.covered && knob.reason != "unobservable"; }

void fillGuard(Snapshot& snapshot, const std::vector<StatusReport::Feature>& features) {
  const auto guard = std::ranges::find(features, "guard", &StatusReport::Feature::id);
  if (guard == features.end()) return;
  snapshot.guardFeatureState = guard->state;
  const auto& ecosystems = guard->ecosystems;
  if (!ecosystems) return;
  for (const auto& ecosystem : *ecosystems) {
    snapshot.guardEcosystems.push_back({ecosystem.ecosystem, ecosystem.state});
  }
}

}  // namespace

namespace TrustGaps {

namespace {

struct Row {
  std::string_view env;
  std::string_view ecosystem;
};

constexpr Row rows[] = {
    {"NODE_EXTRA_CA_CERTS", "npm"}, {"REQUESTS_CA_BUNDLE", "pypi"}, {"SSL_CERT_FILE", "rubygems"},
    {"SSL_CERT_FILE", "pypi"},      {"GEMRC", "rubygems"},          {"PHP_INI_SCAN_DIR", "packagist"},
};

}  // namespace

std::vector<std::string> legacyKnobProtects(std::string_view env) {
  std::vector<std::string> ecosystems;
  for (const auto& row : rows) {
    if (row.env == env) ecosystems.emplace_back(row.ecosystem);
  }
  return ecosystems;
}

}  // namespace TrustGaps

void Snapshot::fill(const StatusReport& report) {
  daemonListening = report.daemonListening;
  caTrusted = report.caTrusted;
  tokenPresent = report.tokenPresent;
  tokenManaged = report.tokenManaged;
  version = report.version;
  update = report.update;
  caTrustPending = report.caTrustPending.value_or(false);
  enrolled = report.enrolled.value_or(false);
  tokenMasked = report.tokenMasked.value_or("");
  if (report.health) apply(*report.health);
  if (report.features) fillGuard(*this, *report.features);
  if (report.interception) policyDirectFlows = report.interception->policyDirectFlows.value_or(0);
  if (report.checkin) {
    lastCheckinSuccess = time(report.checkin->lastSuccess);
    lastCheckinError = report.checkin->lastError.value_or("");
  }
}

void Snapshot::apply(const StatusReport::Health& health) {
  verdict = health.verdict.value_or("");
  offByPolicy = health.offByPolicy.value_or(0);
  for (const auto& component : healthComponents) {
    const auto* reported = component.reported(health);
    this->*component.health = reported == nullptr ? ComponentHealth() : condensed(*reported);
  }
  uncoveredEcosystems.clear();
  trustGaps.clear();
  if (!health.runtimeTrust || !health.runtimeTrust->knobs) return;
  for (const auto& knob : *health.runtimeTrust->knobs) {
    if (!isGap(knob)) continue;
    uncoveredEcosystems.push_back(knob.ecosystem + " (" + knob.env + ")");
    trustGaps.push_back({knob.protects ? *knob.protects : TrustGaps::legacyKnobProtects(knob.env), knob.env});
  }
}

std::int64_t Snapshot::offByPolicyCount() const {
  if (!verdict.empty()) return offByPolicy;
  return std::ranges::count(guardEcosystems, "off_by_policy", &GuardEcosystem::state);
}

std::string networkExtensionStates(const Snapshot& snapshot) {
  const auto member = [](const char* key, bool value) {
    return std::string("\"") + key + "\":" + (value ? "true" : "false");
  };
  auto text = "{" + member("egress_lock_filter_enabled", snapshot.egressLockEnabled) + "," +
              member("sysext_active", snapshot.sysextActive);
  if (snapshot.transparentProxy) {
    text += "," + member("transparent_proxy_approved", snapshot.transparentProxy->approved) + "," +
            member("transparent_proxy_enabled", snapshot.transparentProxy->enabled);
  }
  return text + "}";
}

}  // namespace ostrel
