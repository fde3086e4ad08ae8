#include "OstrelAgent/Panel/StatusPanel.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using builders::describe;
using builders::health;
using builders::healthy;

TEST(StatusPanel, NeverShowsAnUnknownSeverityAsHealthy) {
  struct Row {
    const char* state;
    const char* severity;
    const char* row;
  };
  constexpr Row rows[] = {
      {"broken", "red", "bad B"},       {"broken", "yellow", "warn B"},  {"broken", "info", "off B"},
      {"broken", "", "bad B"},          {"broken", "Yellow", "bad B"},   {"ok", "red", "ok O"},
      {"", "red", "info not reported"}, {"unknown", "", "info unknown"}, {"unknown", "info", "off unknown"},
      {"OK", "yellow", "warn OK"},      {"odd", "purple", "bad odd"}};
  for (const auto& row : rows)
    EXPECT_EQ(describe(healthState(health(row.state, row.severity), "O", "B")), row.row);
}

TEST(StatusPanel, ShowsTheStateOfTheEgressLock) {
  struct Row {
    const char* state;
    const char* severity;
    const char* code;
    const char* row;
  };
  constexpr Row rows[] = {
      {"ok", "red", "PARTIAL", "ok enforcing"},
      {"ok", "", "PERMITS_NOTHING", "ok nothing to lock"},
      {"broken", "yellow", "PROVIDER_FAILED", "warn provider failed"},
      {"unknown", "", "PROVIDER_SILENT", "info provider not reporting"},
      {"unknown", "purple", "AWAITING_ASSERTION", "bad waiting for policy"},
      {"broken", "yellow", "PARTIAL", "warn enforcing, resolving hosts"},
      {"unknown", "", "UNREPORTED", "info The egress lock has not reported its state to the agent yet."},
      {"off", "red", "PARTIAL", "ok enabled"},
  };
  auto snapshot = healthy();
  for (const auto& row : rows) {
    snapshot.egressLock = health(row.state, row.severity, std::string("EGRESS_LOCK_") + row.code);
    EXPECT_EQ(describe(egressLockState(snapshot)), row.row);
  }
  snapshot.egressLockEnabled = false;
  EXPECT_EQ(describe(egressLockState(snapshot)), "warn approval needed");
  snapshot.mdmEnrolled = true;
  EXPECT_EQ(describe(egressLockState(snapshot)), "info via your organization's profile");
}

TEST(StatusPanel, ShowsTheCredentialOrTheNameOfTheToken) {
  auto snapshot = healthy();
  EXPECT_EQ(describe(credentialState(snapshot)), "ok ost_…9f");
  snapshot.tokenManaged = true;
  EXPECT_EQ(describe(credentialState(snapshot)), "ok ost_…9f (managed)");
  snapshot.tokenMasked.clear();
  EXPECT_EQ(describe(credentialState(snapshot)), "ok org token (managed)");
  snapshot.tokenPresent = false;
  EXPECT_EQ(describe(credentialState(snapshot)), "ok enrolled");
  snapshot.enrolled = false;
  EXPECT_EQ(describe(credentialState(snapshot)), "bad not enrolled");
  snapshot.credential = health("broken", "yellow", "CREDENTIAL_REVOKED");
  EXPECT_EQ(describe(credentialState(snapshot)), "warn unavailable");
  snapshot.credential.detail = "Revoked";
  EXPECT_EQ(describe(credentialState(snapshot)), "warn Revoked");
}

TEST(StatusPanel, ShowsTheCaptureWithTheSeverityOfDaemonOrExtension) {
  auto snapshot = healthy();
  EXPECT_EQ(describe(captureState(snapshot)), "ok active");
  snapshot.sysext = health("broken", "info", "SYSEXT_PREDATES_DAEMON");
  EXPECT_EQ(describe(captureState(snapshot)), "off system extension too old, installs blocked");
  snapshot.sysext.code = "SYSEXT_PROXY_DISABLED";
  snapshot.daemon.severity = "yellow";
  EXPECT_EQ(describe(captureState(snapshot)), "warn Network filter is off");
  snapshot.sysext.code = "";
  snapshot.sysextActive = false;
  EXPECT_EQ(describe(captureState(snapshot)), "warn system extension not running");
  snapshot.daemonListening = false;
  snapshot.daemon.severity = "info";
  snapshot.sysext.severity = "";
  EXPECT_EQ(describe(captureState(snapshot)), "bad daemon not running");
}

TEST(StatusPanel, ShowsTheDeviceCertificateWithTheSeverityOfTrustOrExpiry) {
  auto snapshot = healthy();
  snapshot.caExpiry = health("broken", "info");
  EXPECT_EQ(describe(deviceCAState(snapshot)), "warn approaching expiry");
  snapshot.caExpiry.detail = "soon";
  EXPECT_EQ(describe(deviceCAState(snapshot)), "off soon");
  snapshot.deviceCA.severity = "yellow";
  EXPECT_EQ(describe(deviceCAState(snapshot)), "ok trusted");
  snapshot.caTrusted = false;
  EXPECT_EQ(describe(deviceCAState(snapshot)), "warn not trusted");
  snapshot.deviceCA.severity = "red";
  EXPECT_EQ(describe(deviceCAState(snapshot)), "bad not trusted");
  snapshot.caTrustPending = true;
  EXPECT_EQ(describe(deviceCAState(snapshot)), "warn not trusted yet, finish setup");
}

TEST(StatusPanel, ListsItsComponentsInOrderWithTheirHealth) {
  auto snapshot = healthy();
  snapshot.daemon.severity = "red";
  snapshot.captureSet = health("broken", "red");
  const auto broken = RowState::bad("diverged, re-activate Ostrel Agent");
  const std::vector<StatusComponent> expected = {
      {"component.capture", RowState::ok("active"), snapshot.daemon, "Capture"},
      {"component.credential", RowState::ok("ost_…9f"), snapshot.credential, "Credential"},
      {"component.runtimeTrust", RowState::ok("covered"), snapshot.runtimeTrust, "Runtime trust"},
      {"component.captureSet", broken, snapshot.captureSet, "Capture set"},
      {"component.deviceCA", RowState::ok("trusted"), snapshot.caExpiry, "Device CA"}};
  EXPECT_EQ(components(snapshot), expected);
}

TEST(StatusPanel, RollsHealthUpToTheWorst) {
  const auto ok = RowState::ok(""), warn = RowState::warn(""), bad = RowState::bad(""),
             info = RowState::info(""), off = RowState::off("");
  const std::pair<std::vector<RowState>, const char*> rows[] = {
      {{ok, ok}, "ok all components OK"},       {{ok, off}, "ok OK, 1 note"},
      {{off, off}, "ok OK, 2 notes"},           {{off, info}, "warn 2 not fully healthy"},
      {{warn, ok}, "warn 1 not fully healthy"}, {{bad, warn, off, bad}, "bad 2 need attention"}};
  for (const auto& [states, rollup] : rows) {
    std::vector<StatusComponent> list;
    for (const auto& state : states) list.push_back({"", state, {}, {}});
    EXPECT_EQ(describe(healthRollup(list)), rollup);
  }
}

TEST(StatusPanel, ShowsTheLastCheckIn) {
  auto snapshot = healthy();
  const auto fact = [&] { return checkinFact(snapshot, builders::now, builders::times()); };
  EXPECT_EQ(fact(), "5 min ago");
  snapshot.lastCheckinError = "timeout";
  EXPECT_EQ(fact(), "failing · last ok 5 min ago");
  snapshot.lastCheckinSuccess.reset();
  EXPECT_EQ(fact(), "failing");
  snapshot.lastCheckinError.clear();
  EXPECT_EQ(fact(), "never");
}

TEST(StatusPanel, AContainerBlockComesBeforeRunningRuntimesWhichAreNeverOk) {
  auto snapshot = builders::healthy();
  EXPECT_EQ(describe(containersState(snapshot, {})), "info none running");
  EXPECT_EQ(describe(containersState(snapshot, {"Colima", "Podman"})), "info Colima and Podman running");
  snapshot.runtimeTrust = health("ok", "", "CONTAINER_REJECTED_LEAF", {"Lima", "Podman"});
  EXPECT_EQ(describe(containersState(snapshot, {"Colima"})), "bad Blocked in Lima and Podman");
  snapshot.runtimeTrust.severity = "info";
  EXPECT_EQ(describe(containersState(snapshot, {})), "off Blocked in Lima and Podman");
}

}  // namespace
}  // namespace ostrel
