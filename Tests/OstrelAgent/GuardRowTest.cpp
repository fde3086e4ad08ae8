#include "OstrelAgent/GuardRow.hpp"

#include <gtest/gtest.h>

#include <functional>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

using readings::healthy;

TEST(GuardRow, FailsForTheMostFundamentalCauseWithItsSeverity) {
  // Every cause at once; each step repairs the first one, so that the next shows.
  auto snapshot = healthy();
  snapshot.trustGaps = {{{"npm"}, "NODE_EXTRA_CA_CERTS"}};
  snapshot.daemonListening = snapshot.sysextActive = snapshot.caTrusted = false;
  snapshot.caTrustPending = true;
  snapshot.sysext = readings::health("broken", "yellow", "SYSEXT_PROXY_DISABLED");
  snapshot.captureSet = readings::health("broken", "yellow");
  snapshot.credential = readings::health("broken", "yellow", "CREDENTIAL_REVOKED");
  snapshot.credential.detail = "Revoked";
  snapshot.daemon.severity = snapshot.deviceCA.severity = "yellow";
  struct Row {
    const char* rollup;
    const char* consequence;
    Snapshot::ComponentHealth Snapshot::*cause;
    bool isAmberUnweighed;
    std::function<void()> repair;
  };
  const Row rows[] = {
      {"not protecting", "The agent daemon is not running.", &Snapshot::daemon, false,
       [&] { snapshot.daemonListening = true; }},
      {"not protecting", "The network filter is off", &Snapshot::sysext, false,
       [&] { snapshot.sysext.code = "SYSEXT_INACTIVE"; }},
      {"not protecting", "The capture session is not active", &Snapshot::sysext, false,
       [&] { snapshot.sysextActive = true; }},
      {"setup unfinished", "This Mac doesn't trust the device certificate yet.", &Snapshot::deviceCA, true,
       [&] { snapshot.caTrustPending = false; }},
      {"not protecting", "The device CA is not trusted", &Snapshot::deviceCA, false,
       [&] { snapshot.caTrusted = true; }},
      {"not protecting", "The capture set has diverged", &Snapshot::captureSet, false,
       [&] { snapshot.captureSet.state = "unknown"; }},
      {"not protecting", "Revoked. Installs fail closed", &Snapshot::credential, false,
       [&] { snapshot.credential.detail = ""; }},
      {"not protecting", "The device credential is unavailable. Installs", &Snapshot::credential, false,
       [&] { snapshot.credential.state = "unknown"; }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.consequence);
    const auto failure = guardFailure(snapshot);
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->consequence.starts_with(row.consequence)) << failure->consequence;
    EXPECT_EQ(failure->component, snapshot.*row.cause);
    EXPECT_EQ(guardRollup(snapshot), RowState::warn(row.rollup));
    for (const auto* severity : {"red", "info", ""}) {
      auto other = snapshot;
      (other.*row.cause).severity = severity;
      const bool isAmber = row.isAmberUnweighed && *severity == '\0';
      EXPECT_EQ(guardRollup(other), isAmber ? RowState::warn(row.rollup) : RowState::bad(row.rollup))
          << severity;
    }
    row.repair();
  }
  EXPECT_EQ(guardFailure(snapshot), std::nullopt);
  EXPECT_EQ(guardRollup(snapshot), RowState::bad("1 of 3 not covered"));
}

TEST(GuardRow, ListsTheWorstEcosystemsFirstThenByName) {
  auto snapshot = healthy();
  snapshot.guardEcosystems = {{"pypi", "enforced"}, {"npm", "off_by_policy"},  {"go", "enforced"},
                              {"cargo", "odd"},     {"gems", "off_by_policy"}, {"apt", "off_by_policy"}};
  snapshot.trustGaps = {{{}, "GEMRC"}, {{"go", "gems"}, "FIRST"}, {{"go", "other"}, "SECOND"}};
  const std::vector<StatusComponent> expected = {{"gems", RowState::bad("not covered (FIRST)"), {}, {}},
                                                 {"go", RowState::bad("not covered (FIRST)"), {}, {}},
                                                 {"apt", RowState::off("off by policy"), {}, {}},
                                                 {"npm", RowState::off("off by policy"), {}, {}},
                                                 {"cargo", RowState::ok(""), {}, {}},
                                                 {"pypi", RowState::ok(""), {}, {}}};
  EXPECT_EQ(ecosystemRows(snapshot), expected);
  EXPECT_EQ(offEcosystemNames(snapshot), (std::vector<std::string>{"apt", "gems", "npm"}));
  EXPECT_EQ(guardRollup(snapshot), RowState::bad("2 of 6 not covered"));
}

TEST(GuardRow, RollsEcosystemsUp) {
  struct Row {
    std::vector<Snapshot::GuardEcosystem> ecosystems;
    RowState state;
  };
  const Row rows[] = {
      {{}, RowState::info("not reported")},
      {{{"a", "off_by_policy"}, {"b", "off_by_policy"}}, RowState::off("off by policy")},
      {{{"a", "on"}, {"b", ""}, {"c", "on"}}, RowState::ok("all 3 enforced")},
      {{{"a", "on"}, {"b", "off_by_policy"}, {"c", "on"}}, RowState::ok("2 of 3 enforced")},
  };
  for (const auto& row : rows) {
    auto snapshot = healthy();
    snapshot.guardEcosystems = row.ecosystems;
    EXPECT_EQ(guardRollup(snapshot), row.state);
  }
}

}  // namespace
}  // namespace ostrel
