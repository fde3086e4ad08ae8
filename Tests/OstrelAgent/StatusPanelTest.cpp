#include "OstrelAgent/StatusPanel.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using readings::health;
using readings::healthy;

constexpr auto ok = RowState::ok, warn = RowState::warn, bad = RowState::bad, info = RowState::info,
               off = RowState::off;

TEST(StatusPanel, NeverShowsAnUnknownSeverityAsHealthy) {
  struct Row {
    const char* state;
    const char* severity;
    RowState row;
  };
  const Row rows[] = {
      {"broken", "red", bad("B")},         {"broken", "yellow", warn("B")},
      {"broken", "info", off("B")},        {"broken", "", bad("B")},
      {"broken", "Yellow", bad("B")},      {"ok", "red", ok("O")},
      {"", "red", info("not reported")},   {"unknown", "", info("unknown")},
      {"unknown", "info", off("unknown")}, {"OK", "yellow", warn("OK")},
      {"odd", "purple", bad("odd")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(healthState(health(row.state, row.severity), "O", "B"), row.row) << row.state << row.severity;
  }
}

TEST(StatusPanel, TellsTheEgressLocksState) {
  struct Row {
    Snapshot::ComponentHealth lock;
    RowState row;
  };
  const Row rows[] = {
      {health("ok", "red"), ok("enforcing")},
      {health("ok", "", "EGRESS_LOCK_PERMITS_NOTHING"), ok("nothing to lock")},
      {health("broken", "", "EGRESS_LOCK_CONFIGURATION_DISABLED"), bad("switched off in System Settings")},
      {health("broken", "yellow", "EGRESS_LOCK_PROVIDER_FAILED"), warn("provider failed")},
      {health("unknown", "", "EGRESS_LOCK_PROVIDER_SILENT"), info("provider not reporting")},
      {health("unknown", "red", "EGRESS_LOCK_PROVIDER_STOPPED"), bad("stopped, restarting")},
      {health("unknown", "info", "EGRESS_LOCK_ASSERTION_STALLED"), off("no policy assertion")},
      {health("unknown", "purple", "EGRESS_LOCK_AWAITING_ASSERTION"), bad("waiting for policy")},
      {health("broken", "yellow", "EGRESS_LOCK_PARTIAL"), warn("enforcing, resolving hosts")},
      {health("unknown", "", "EGRESS_LOCK_UNREPORTED"),
       info("The egress lock has not reported its state to the agent yet.")},
  };
  for (const auto& row : rows) {
    auto snapshot = healthy();
    snapshot.egressLock = row.lock;
    EXPECT_EQ(egressLockState(snapshot), row.row) << row.lock.state << ' ' << row.lock.code;
  }
  auto snapshot = healthy();
  snapshot.egressLock = health("off", "red", "EGRESS_LOCK_NOT_CONFIGURED");
  snapshot.mdmEnrolled = true;
  EXPECT_EQ(egressLockState(snapshot), ok("enabled"));
  snapshot.egressLockEnabled = false;
  EXPECT_EQ(egressLockState(snapshot), info("via your organization's profile"));
  snapshot.mdmEnrolled = false;
  EXPECT_EQ(egressLockState(snapshot), warn("approval needed"));
}

TEST(StatusPanel, TellsTheCredentialOrTheTokensName) {
  auto snapshot = healthy();
  EXPECT_EQ(credentialState(snapshot), ok("ost_…9f"));
  snapshot.tokenManaged = true;
  EXPECT_EQ(credentialState(snapshot), ok("ost_…9f (managed)"));
  snapshot.tokenMasked.clear();
  EXPECT_EQ(credentialState(snapshot), ok("org token (managed)"));
  snapshot.tokenPresent = false;
  EXPECT_EQ(credentialState(snapshot), ok("enrolled"));
  snapshot.enrolled = false;
  EXPECT_EQ(credentialState(snapshot), bad("not enrolled"));
  snapshot.credential = health("broken", "yellow", "CREDENTIAL_UNOBSERVABLE");
  EXPECT_EQ(credentialState(snapshot), warn("unavailable"));
  snapshot.credential.detail = "wire";
  EXPECT_EQ(credentialState(snapshot), warn("The agent could not check its credential this time."));
}

TEST(StatusPanel, TellsTheCaptureAndWeighsItOnTheDaemonOrTheExtension) {
  auto snapshot = healthy();
  EXPECT_EQ(captureState(snapshot), ok("active"));
  snapshot.sysext = health("broken", "info", "SYSEXT_PREDATES_DAEMON");
  EXPECT_EQ(captureState(snapshot), off("system extension too old, installs blocked"));
  snapshot.sysext.code = "SYSEXT_PROXY_DISABLED";
  EXPECT_EQ(captureState(snapshot), off("Network filter is off"));
  snapshot.daemon.severity = "yellow";
  EXPECT_EQ(captureState(snapshot), warn("Network filter is off"));
  snapshot.daemonListening = false;
  EXPECT_EQ(captureState(snapshot), warn("daemon not running"));
  snapshot.daemon.severity = "info";
  snapshot.sysext.severity = "";
  EXPECT_EQ(captureState(snapshot), bad("daemon not running"));
  snapshot = healthy();
  snapshot.sysextActive = false;
  snapshot.sysext.severity = "yellow";
  EXPECT_EQ(captureState(snapshot), warn("system extension not running"));
}

TEST(StatusPanel, TellsTheDeviceCertificateAndWeighsItOnTrustOrExpiry) {
  auto snapshot = healthy();
  snapshot.caExpiry = health("broken", "info", "CA_EXPIRING_SOON");
  EXPECT_EQ(deviceCAState(snapshot), warn("approaching expiry"));
  snapshot.caExpiry.detail = "wire";
  EXPECT_EQ(deviceCAState(snapshot).kind, RowState::Case::off);
  EXPECT_TRUE(deviceCAState(snapshot).text.starts_with("The device certificate expires soon"));
  snapshot.deviceCA.severity = "yellow";
  EXPECT_EQ(deviceCAState(snapshot), ok("trusted"));
  snapshot.caTrusted = false;
  EXPECT_EQ(deviceCAState(snapshot), warn("not trusted"));
  snapshot.deviceCA.severity = "red";
  EXPECT_EQ(deviceCAState(snapshot), bad("not trusted"));
  snapshot.caTrustPending = true;
  EXPECT_EQ(deviceCAState(snapshot), warn("not trusted yet, finish setup"));
}

TEST(StatusPanel, ListsItsComponentsInOrderWithTheHealthTheyAreWeighedOn) {
  auto snapshot = healthy();
  snapshot.daemon.severity = "red";
  snapshot.captureSet = health("broken", "red");
  const std::vector<StatusComponent> expected = {
      {"component.capture", ok("active"), snapshot.daemon, "Capture"},
      {"component.credential", ok("ost_…9f"), snapshot.credential, "Credential"},
      {"component.runtimeTrust", ok("covered"), snapshot.runtimeTrust, "Runtime trust"},
      {"component.captureSet", bad("diverged, re-activate Ostrel Agent"), snapshot.captureSet, "Capture set"},
      {"component.deviceCA", ok("trusted"), snapshot.caExpiry, "Device CA"}};
  EXPECT_EQ(components(snapshot), expected);
}

TEST(StatusPanel, RollsHealthUpToTheWorst) {
  struct Row {
    std::vector<RowState> states;
    RowState rollup;
  };
  const Row rows[] = {
      {{}, ok("all components OK")},
      {{ok(""), ok("")}, ok("all components OK")},
      {{ok(""), off("")}, ok("OK, 1 note")},
      {{off(""), off("")}, ok("OK, 2 notes")},
      {{off(""), info("")}, warn("2 not fully healthy")},
      {{warn(""), ok("")}, warn("1 not fully healthy")},
      {{bad(""), warn(""), off(""), bad("")}, bad("2 need attention")},
  };
  for (const auto& row : rows) {
    std::vector<StatusComponent> list;
    for (const auto& state : row.states) list.push_back({"", state, {}, {}});
    EXPECT_EQ(healthRollup(list), row.rollup) << testing::PrintToString(row.states);
  }
}

TEST(StatusPanel, TellsTheLastCheckIn) {
  auto snapshot = healthy();
  const auto fact = [&] { return checkinFact(snapshot, readings::now, readings::times()); };
  EXPECT_EQ(fact(), "5 min ago");
  snapshot.lastCheckinError = "timeout";
  EXPECT_EQ(fact(), "failing · last ok 5 min ago");
  snapshot.lastCheckinSuccess.reset();
  EXPECT_EQ(fact(), "failing");
  snapshot.lastCheckinError.clear();
  EXPECT_EQ(fact(), "never");
}

}  // namespace
}  // namespace ostrel
