#include "OstrelAgent/Status/Snapshot.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/ReportText.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using Texts = std::vector<std::string>;
using Health = StatusReport::Health;

TEST(Snapshot, KeysMissingInAReportAreEmpty) {
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

TEST(Snapshot, TakesEveryValueOfAReport) {
  auto report = StatusReport::decode(fullReportText()).value();
  report.features->insert(report.features->begin(), {"Guard", "x", {}});
  report.features->push_back({"guard", "off", {{{"pypi", "c", "s"}}}});
  Snapshot expected;
  expected.version = "2.4.0";
  expected.caTrusted = expected.tokenPresent = expected.tokenManaged = expected.daemonListening = true;
  expected.enrolled = expected.caTrustPending = true;
  expected.tokenMasked = "ost_…9f";
  expected.update = report.update;
  expected.verdict = "protected";
  expected.offByPolicy = 2;
  char detail = '1';
  for (auto* health :
       {&expected.daemon, &expected.deviceCA, &expected.sysext, &expected.runtimeTrust, &expected.credential,
        &expected.captureSet, &expected.caExpiry, &expected.egressLock}) {
    *health = {"ok", std::string(1, detail++), "C", "red", true, builders::now, {"p", "q"}};
  }
  expected.guardEcosystems = {{"npm", "s"}};
  expected.guardFeatureState = "on";
  expected.policyDirectFlows = 12;
  expected.lastCheckinSuccess = builders::now;
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

TEST(Snapshot, WritesItsNetworkExtensionStatesAsSortedJson) {
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
