#include "OstrelAgent/Snapshot.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::string>;
using Health = StatusReport::Health;

TEST(Snapshot, ReadsWhatAReportLeavesOutAsEmpty) {
  StatusReport report;
  report.version = "1";
  Snapshot expected;
  expected.version = "1";
  Snapshot snapshot;
  snapshot.fill(report);
  EXPECT_EQ(snapshot, expected);
  report.health.emplace();
  report.features.emplace();
  report.interception.emplace();
  report.checkin.emplace();
  snapshot.fill(report);
  EXPECT_EQ(snapshot, expected);
}

TEST(Snapshot, TakesOverWhatAReportSays) {
  const auto component = [](const char* state) {
    return Health::Component{state, "d", "C", "red", true, "2025-01-02T10:00:00.5Z", Texts{"p"}};
  };
  const auto health = [](const char* state) {
    return Snapshot::ComponentHealth{state, "d", "C", "red", true, readings::now + 500ms, {"p"}};
  };
  StatusReport report;
  report.caTrusted = report.tokenPresent = report.tokenManaged = report.daemonListening = true;
  report.tokenMasked = "ost_…9f";
  report.enrolled = report.caTrustPending = true;
  report.update = StatusReport::Update{"eol", "3", std::nullopt};
  report.health = Health{component("1"), component("2"),
                         component("3"), Health::RuntimeTrust{component("4"), {}},
                         component("5"), component("6"),
                         component("7"), component("8"),
                         "degraded",     -2};
  report.features = {{"other", "x", {}},
                     {"guard", "on", {{{"npm", "full", "enforced"}, {"go", "part", "off_by_policy"}}}},
                     {"guard", "off", {{{"pypi", "c", "s"}}}}};
  report.interception = StatusReport::Interception{7};
  report.checkin = StatusReport::Checkin{"2025-01-02T12:00:00+02:00", "timeout"};
  Snapshot expected;
  expected.caTrusted = expected.tokenPresent = expected.tokenManaged = expected.daemonListening = true;
  expected.enrolled = expected.caTrustPending = true;
  expected.tokenMasked = "ost_…9f";
  expected.update = report.update;
  expected.verdict = "degraded";
  expected.offByPolicy = -2;
  expected.daemon = health("1");
  expected.deviceCA = health("2");
  expected.sysext = health("3");
  expected.runtimeTrust = health("4");
  expected.credential = health("5");
  expected.captureSet = health("6");
  expected.caExpiry = health("7");
  expected.egressLock = health("8");
  expected.guardEcosystems = {{"npm", "enforced"}, {"go", "off_by_policy"}};
  expected.guardFeatureState = "on";
  expected.policyDirectFlows = 7;
  expected.lastCheckinSuccess = readings::now;
  expected.lastCheckinError = "timeout";
  Snapshot snapshot;
  snapshot.fill(report);
  EXPECT_EQ(snapshot, expected);
}

TEST(Snapshot, ReadsABadTimeAsNone) {
  Health health;
  health.daemon = Health::Component{"ok", {}, {}, {}, {}, "tomorrow", {}};
  Snapshot snapshot;
  snapshot.apply(health);
  EXPECT_EQ(snapshot.daemon, readings::health("ok"));
}

TEST(Snapshot, FindsTrustGapsInUncoveredSettings) {
  struct Row {
    const char* env;
    std::optional<Texts> protects;
    bool covered;
    const char* reason;
    std::optional<Texts> gap;
  };
  const Row rows[] = {
      {"NODE_EXTRA_CA_CERTS", {}, false, "missing", Texts{"npm"}},
      {"NODE_EXTRA_CA_CERTS", {}, true, "missing", {}},
      {"NODE_EXTRA_CA_CERTS", {}, false, "unobservable", {}},
      {"NODE_EXTRA_CA_CERTS", {}, false, "Unobservable", Texts{"npm"}},
      {"NODE_EXTRA_CA_CERTS", Texts{"yarn", "npm"}, false, "", Texts{"yarn", "npm"}},
      {"NODE_EXTRA_CA_CERTS", Texts{}, false, "missing", Texts{}},
      {"REQUESTS_CA_BUNDLE", {}, false, "missing", Texts{"pypi"}},
      {"SSL_CERT_FILE", {}, false, "missing", Texts{"rubygems", "pypi"}},
      {"GEMRC", {}, false, "missing", Texts{"rubygems"}},
      {"PHP_INI_SCAN_DIR", {}, false, "missing", Texts{"packagist"}},
      {"gemrc", {}, false, "missing", Texts{}},
  };
  Health health;
  health.runtimeTrust.emplace().knobs.emplace();
  Texts uncovered;
  std::vector<Snapshot::TrustGap> gaps;
  for (const auto& row : rows) {
    health.runtimeTrust->knobs->push_back(
        {row.env, "eco", row.protects, row.covered, row.reason, {}, {}, {}, {}});
    if (!row.gap) continue;
    uncovered.push_back(std::string("eco (") + row.env + ")");
    gaps.push_back({*row.gap, row.env});
  }
  Snapshot snapshot;
  snapshot.apply(health);
  EXPECT_EQ(snapshot.uncoveredEcosystems, uncovered);
  EXPECT_EQ(snapshot.trustGaps, gaps);
  health.runtimeTrust->knobs.reset();
  snapshot.apply(health);
  EXPECT_EQ(snapshot.uncoveredEcosystems, Texts());
  EXPECT_TRUE(snapshot.trustGaps.empty());
}

TEST(Snapshot, TellsItsNetworkExtensionStatesAsSortedJson) {
  Snapshot snapshot;
  snapshot.sysextActive = true;
  EXPECT_EQ(networkExtensionStates(snapshot), R"({"egress_lock_filter_enabled":false,"sysext_active":true})");
  snapshot.egressLockEnabled = true;
  snapshot.transparentProxy = {.approved = true, .enabled = false};
  EXPECT_EQ(networkExtensionStates(snapshot),
            R"({"egress_lock_filter_enabled":true,"sysext_active":true,)"
            R"("transparent_proxy_approved":true,"transparent_proxy_enabled":false})");
}

}  // namespace
}  // namespace ostrel
