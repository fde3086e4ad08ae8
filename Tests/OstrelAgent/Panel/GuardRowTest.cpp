#include "OstrelAgent/Panel/GuardRow.hpp"

#include <gtest/gtest.h>

#include <functional>

#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using builders::describe;
using builders::healthy;

TEST(GuardRow, FailsForTheMostFundamentalCauseWithItsSeverity) {
  // Every cause at once; each row's step repairs it, so that the next shows.
  auto s = healthy();
  s.trustGaps = {{{"npm"}, "NODE_EXTRA_CA_CERTS"}};
  s.daemonListening = s.sysextActive = s.caTrusted = false;
  s.caTrustPending = true;
  s.sysext.code = "SYSEXT_PROXY_DISABLED";
  s.captureSet.state = s.credential.state = "broken";
  s.credential.code = "CREDENTIAL_REVOKED";
  s.credential.detail = "Revoked";
  struct Row {
    const char* consequence;
    Snapshot::ComponentHealth& cause;
    std::function<void()> repair;
  };
  const Row rows[] = {
      {"The agent daemon is not running.", s.daemon, [&] { s.daemonListening = true; }},
      {"The network filter is off", s.sysext, [&] { s.sysext.code = "SYSEXT_INACTIVE"; }},
      {"The capture session is not active", s.sysext, [&] { s.sysextActive = true; }},
      {"This Mac doesn't trust the device certificate", s.deviceCA, [&] { s.caTrustPending = false; }},
      {"The device CA is not trusted", s.deviceCA, [&] { s.caTrusted = true; }},
      {"The capture set has diverged", s.captureSet, [&] { s.captureSet.state = "unknown"; }},
      {"Revoked. Installs fail closed", s.credential, [&] { s.credential.detail = ""; }},
      {"The device credential is unavailable. Installs", s.credential,
       [&] { s.credential.state = "unknown"; }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.consequence);
    const bool isPending = s.caTrustPending && s.sysextActive;
    for (const std::string severity : {"yellow", "red", "info", ""}) {
      row.cause.severity = severity;
      const auto failure = guardFailure(s);
      ASSERT_TRUE(failure);
      EXPECT_TRUE(failure->consequence.starts_with(row.consequence)) << failure->consequence;
      EXPECT_EQ(failure->component, row.cause);
      const bool isAmber = severity == "yellow" || (isPending && severity.empty());
      EXPECT_EQ(describe(guardRollup(s)), std::string(isAmber ? "warn " : "bad ") +
                                              (isPending ? "setup unfinished" : "not protecting"));
    }
    row.repair();
  }
  EXPECT_EQ(guardFailure(s), std::nullopt);
  EXPECT_EQ(describe(guardRollup(s)), "bad 1 of 3 not covered");
}

TEST(GuardRow, ListsTheWorstEcosystemsFirstThenByName) {
  auto snapshot = healthy();
  snapshot.guardEcosystems = {{"pypi", "enforced"}, {"npm", "off_by_policy"},  {"go", "enforced"},
                              {"cargo", "odd"},     {"gems", "off_by_policy"}, {"apt", "off_by_policy"}};
  snapshot.trustGaps = {{{}, "GEMRC"}, {{"go", "gems"}, "FIRST"}, {{"go", "other"}, "SECOND"}};
  std::string rows;
  for (const auto& row : ecosystemRows(snapshot)) rows += row.id + ": " + describe(row.state) + "; ";
  EXPECT_EQ(rows,
            "gems: bad not covered (FIRST); go: bad not covered (FIRST); apt: off off by policy; "
            "npm: off off by policy; cargo: ok ; pypi: ok ; ");
  EXPECT_EQ(offEcosystemNames(snapshot), (std::vector<std::string>{"apt", "gems", "npm"}));
  EXPECT_EQ(describe(guardRollup(snapshot)), "bad 2 of 6 not covered");
}

TEST(GuardRow, RollsEcosystemsUp) {
  const std::pair<std::vector<Snapshot::GuardEcosystem>, const char*> rows[] = {
      {{}, "info not reported"},
      {{{"a", "off_by_policy"}, {"b", "off_by_policy"}}, "off off by policy"},
      {{{"a", "on"}, {"b", ""}, {"c", "on"}}, "ok all 3 enforced"},
      {{{"a", "on"}, {"b", "off_by_policy"}, {"c", "on"}}, "ok 2 of 3 enforced"},
  };
  for (const auto& [ecosystems, rollup] : rows) {
    auto snapshot = healthy();
    snapshot.guardEcosystems = ecosystems;
    EXPECT_EQ(describe(guardRollup(snapshot)), rollup);
  }
}

}  // namespace
}  // namespace ostrel
