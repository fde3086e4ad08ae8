#include "OstrelAgent/Snapshot.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

using Texts = std::vector<std::string>;
using Health = StatusReport::Health;

TEST(Snapshot, ReadsWhatAReportLeavesOutAsEmpty) {
  StatusReport report;
  Snapshot snapshot;
  snapshot.fill(report);
  EXPECT_EQ(snapshot, Snapshot());
  report.health.emplace().daemon = Health::Component{"", {}, {}, {}, {}, "tomorrow", {}};
  report.features.emplace();
  report.interception.emplace();
  report.checkin.emplace();
  snapshot.fill(report);
  EXPECT_EQ(snapshot, Snapshot());
}

TEST(Snapshot, TakesOverWhatAReportSays) {
  const auto part = [](const char* state) {
    return Health::Component{state, "d", "C", "red", true, "2025-01-02T12:00:00+02:00", Texts{"p"}};
  };
  StatusReport report;
  report.version = "2.4.0";
  report.caTrusted = report.tokenPresent = report.tokenManaged = report.daemonListening = true;
  report.enrolled = report.caTrustPending = true;
  report.tokenMasked = "ost_…9f";
  report.update = StatusReport::Update{"eol", "3", std::nullopt};
  report.health = Health{part("1"),  part("2"), part("3"), Health::RuntimeTrust{part("4"), {}},
                         part("5"),  part("6"), part("7"), part("8"),
                         "degraded", -2};
  report.features = {{"Guard", "x", {}},
                     {"guard", "on", {{{"npm", "full", "enforced"}, {"go", "part", "off_by_policy"}}}},
                     {"guard", "off", {{{"pypi", "c", "s"}}}}};
  report.interception = StatusReport::Interception{7};
  report.checkin = StatusReport::Checkin{"2025-01-02T10:00:00Z", "timeout"};
  Snapshot expected;
  expected.version = "2.4.0";
  expected.caTrusted = expected.tokenPresent = expected.tokenManaged = expected.daemonListening = true;
  expected.enrolled = expected.caTrustPending = true;
  expected.tokenMasked = "ost_…9f";
  expected.update = report.update;
  expected.verdict = "degraded";
  expected.offByPolicy = -2;
  char state = '1';
  for (auto* health :
       {&expected.daemon, &expected.deviceCA, &expected.sysext, &expected.runtimeTrust, &expected.credential,
        &expected.captureSet, &expected.caExpiry, &expected.egressLock}) {
    *health = {std::string(1, state++), "d", "C", "red", true, readings::now, {"p"}};
  }
  expected.guardEcosystems = {{"npm", "enforced"}, {"go", "off_by_policy"}};
  expected.guardFeatureState = "on";
  expected.policyDirectFlows = 7;
  expected.lastCheckinSuccess = readings::now;
  expected.lastCheckinError = "timeout";
  Snapshot snapshot;
  snapshot.fill(report);
  EXPECT_EQ(snapshot, expected);
}

TEST(Snapshot, FindsTrustGapsInUncoveredSettings) {
  const auto knob = [](std::string env, std::optional<Texts> protects, bool covered, std::string reason) {
    return Health::Knob{
        std::move(env), "eco", std::move(protects), covered, std::move(reason), {}, {}, {}, {}};
  };
  Health health;
  health.runtimeTrust.emplace().knobs = {knob("NODE_EXTRA_CA_CERTS", {}, true, "missing"),
                                         knob("NODE_EXTRA_CA_CERTS", {}, false, "unobservable"),
                                         knob("NODE_EXTRA_CA_CERTS", {}, false, "missing"),
                                         knob("REQUESTS_CA_BUNDLE", {}, false, "Unobservable"),
                                         knob("SSL_CERT_FILE", {}, false, ""),
                                         knob("GEMRC", {}, false, "missing"),
                                         knob("PHP_INI_SCAN_DIR", {}, false, "missing"),
                                         knob("gemrc", {}, false, "missing"),
                                         knob("GEMRC", Texts{"yarn", "npm"}, false, "missing"),
                                         knob("GEMRC", Texts{}, false, "missing")};
  Snapshot snapshot;
  snapshot.apply(health);
  const std::vector<Snapshot::TrustGap> gaps = {{{"npm"}, "NODE_EXTRA_CA_CERTS"},
                                                {{"pypi"}, "REQUESTS_CA_BUNDLE"},
                                                {{"rubygems", "pypi"}, "SSL_CERT_FILE"},
                                                {{"rubygems"}, "GEMRC"},
                                                {{"packagist"}, "PHP_INI_SCAN_DIR"},
                                                {{}, "gemrc"},
                                                {{"yarn", "npm"}, "GEMRC"},
                                                {{}, "GEMRC"}};
  EXPECT_EQ(snapshot.trustGaps, gaps);
  ASSERT_EQ(snapshot.uncoveredEcosystems.size(), gaps.size());
  EXPECT_EQ(snapshot.uncoveredEcosystems[2], "eco (SSL_CERT_FILE)");
  snapshot.apply(Health());
  EXPECT_EQ(snapshot, Snapshot());
}

TEST(Snapshot, TellsItsNetworkExtensionStatesAsSortedJson) {
  Snapshot snapshot;
  snapshot.sysextActive = true;
  EXPECT_EQ(networkExtensionStates(snapshot), R"({"egress_lock_filter_enabled":false,"sysext_active":true})");
  snapshot.transparentProxy = {.approved = true, .enabled = false};
  EXPECT_EQ(networkExtensionStates(snapshot),
            R"({"egress_lock_filter_enabled":false,"sysext_active":true,)"
            R"("transparent_proxy_approved":true,"transparent_proxy_enabled":false})");
}

}  // namespace
}  // namespace ostrel
