#include "OstrelAgent/Panel/StatusPanel.hpp"

#include <algorithm>
#include <iterator>

#include "OstrelAgent/Containers/ContainerBlock.hpp"
#include "OstrelAgent/Panel/RuntimeTrustRow.hpp"
#include "OstrelAgent/Status/HealthComponents.hpp"

namespace ostrel {

namespace {

using Health = Snapshot::ComponentHealth;

struct LockText {
  std::string_view code;
  const Message& message;
};

constexpr LockText lockTexts[] = {
    {"EGRESS_LOCK_CONFIGURATION_DISABLED", Copy::lockShortSwitchedOff},
    {"EGRESS_LOCK_PROVIDER_FAILED", Copy::lockShortProviderFailed},
    {"EGRESS_LOCK_PROVIDER_SILENT", Copy::lockShortProviderSilent},
    {"EGRESS_LOCK_PROVIDER_STOPPED", Copy::lockShortProviderStopped},
    {"EGRESS_LOCK_ASSERTION_STALLED", Copy::lockShortAssertionStalled},
    {"EGRESS_LOCK_AWAITING_ASSERTION", Copy::lockShortAwaitingAssertion},
    {"EGRESS_LOCK_PARTIAL", Copy::lockShortPartial},
};

std::string detailOf(const Health& health) {
  return Copy::componentDetail(health.code, health.detail, health.params);
}

std::string lockText(const Health& lock) {
  const auto* row = std::ranges::find(lockTexts, lock.code, &LockText::code);
  return row == std::end(lockTexts) ? detailOf(lock) : std::string(row->message.text());
}

bool wantsAttention(const Health& health) { return health.severity == "yellow" || health.severity == "red"; }

std::string tokenText(const Snapshot& snapshot) {
  const auto name = snapshot.tokenMasked.empty() ? Copy::identityOrgToken.text() : snapshot.tokenMasked;
  return snapshot.tokenManaged ? Copy::identityManaged.with(name) : std::string(name);
}

const Health& healthOfRow(const Snapshot& snapshot, const Message& label) {
  const Health* shown = nullptr;
  for (const auto& component : healthComponents) {
    if (component.label.key != label.key) continue;
    shown = &(snapshot.*component.health);
    if (wantsAttention(*shown)) break;
  }
  return *shown;
}

struct ComponentRow {
  const Message& label;
  RowState (*state)(const Snapshot&);
};

RowState runtimeTrustRow(const Snapshot& snapshot) { return runtimeTrustState(snapshot.runtimeTrust); }

RowState captureSetRow(const Snapshot& snapshot) {
  return healthState(snapshot.captureSet, Copy::captureSetOk.text(), Copy::captureSetBroken.text());
}

constexpr ComponentRow componentRows[] = {
    {Copy::componentCapture, captureState},         {Copy::componentCredential, credentialState},
    {Copy::componentRuntimeTrust, runtimeTrustRow}, {Copy::componentCaptureSet, captureSetRow},
    {Copy::componentDeviceCA, deviceCAState},
};

/// True when every component has a row and every row a component. The egress lock has `egressLockState`.
consteval bool rowsMatchComponents() {
  const auto key = [](const auto& labelled) { return labelled.label.key; };
  const auto hasRow = [&](std::string_view label) {
    return label == Copy::featureEgressLock.key ||
           std::ranges::find(componentRows, label, key) != std::end(componentRows);
  };
  const auto hasComponent = [&](std::string_view label) {
    return std::ranges::find(healthComponents, label, key) != std::end(healthComponents);
  };
  return std::ranges::all_of(healthComponents, hasRow, key) &&
         std::ranges::all_of(componentRows, hasComponent, key);
}
static_assert(rowsMatchComponents());

}  // namespace

RowState egressLockState(const Snapshot& snapshot) {
  const auto& lock = snapshot.egressLock;
  if (lock.state == "ok") {
    const bool nothing = lock.code == "EGRESS_LOCK_PERMITS_NOTHING";
    return RowState::ok((nothing ? Copy::lockNothingToLock : Copy::lockEnforcing).text());
  }
  if (lock.state == "broken" || lock.state == "unknown") return weighedUnlessUncertain(lockText(lock), lock);
  if (snapshot.egressLockEnabled) return RowState::ok(Copy::lockEnabled.text());
  if (snapshot.mdmEnrolled) return RowState::info(Copy::lockViaProfile.text());
  return RowState::warn(Copy::lockApprovalNeeded.text());
}

RowState credentialState(const Snapshot& snapshot) {
  const auto& credential = snapshot.credential;
  if (credential.state == "broken") {
    const bool isSilent = credential.detail.empty();
    return weighed(isSilent ? std::string(Copy::identityUnavailable.text()) : detailOf(credential),
                   credential);
  }
  if (snapshot.tokenPresent) return RowState::ok(tokenText(snapshot));
  return snapshot.enrolled ? RowState::ok(Copy::identityEnrolled.text())
                           : RowState::bad(Copy::identityNotEnrolled.text());
}

const Health& captureHealth(const Snapshot& snapshot) {
  return healthOfRow(snapshot, Copy::componentCapture);
}

RowState captureState(const Snapshot& snapshot) {
  const auto& health = captureHealth(snapshot);
  if (!snapshot.daemonListening) return weighed(Copy::captureDaemonNotRunning.text(), health);
  if (snapshot.sysext.code == "SYSEXT_PROXY_DISABLED") return weighed(Copy::captureFilterOff.text(), health);
  if (snapshot.sysext.code == "SYSEXT_PREDATES_DAEMON")
    return weighed(Copy::captureSysextTooOld.text(), health);
  if (snapshot.sysextActive) return RowState::ok(Copy::captureActive.text());
  return weighed(Copy::captureSysextNotRunning.text(), health);
}

const Health& deviceCAHealth(const Snapshot& snapshot) {
  return healthOfRow(snapshot, Copy::componentDeviceCA);
}

RowState deviceCAState(const Snapshot& snapshot) {
  const auto& health = deviceCAHealth(snapshot);
  if (!snapshot.caTrusted) {
    return snapshot.caTrustPending ? RowState::warn(Copy::deviceCANotTrustedFinishSetup.text())
                                   : weighed(Copy::deviceCANotTrusted.text(), health);
  }
  if (health.state != "broken") return RowState::ok(Copy::deviceCATrusted.text());
  if (health.detail.empty()) return RowState::warn(Copy::deviceCAApproachingExpiry.text());
  return weighed(detailOf(health), health);
}

std::vector<StatusComponent> components(const Snapshot& snapshot) {
  std::vector<StatusComponent> rows;
  for (const auto& row : componentRows) {
    rows.push_back({std::string(row.label.key), row.state(snapshot), healthOfRow(snapshot, row.label),
                    std::string(row.label.text())});
  }
  return rows;
}

RowState healthRollup(const std::vector<StatusComponent>& components) {
  std::size_t notOk = 0;
  std::size_t bad = 0;
  std::size_t off = 0;
  for (const auto& component : components) {
    notOk += component.state.isOk() ? 0 : 1;
    bad += component.state.kind == RowState::Case::bad ? 1 : 0;
    off += component.state.kind == RowState::Case::off ? 1 : 0;
  }
  if (notOk == 0) return RowState::ok(Copy::healthAllOK.text());
  if (bad > 0) return RowState::bad(Copy::healthNeedAttention.with(bad));
  if (off < notOk) return RowState::warn(Copy::healthNotFullyHealthy.with(notOk));
  return RowState::ok(Copy::healthOKWithNotes(notOk));
}

std::string checkinFact(const Snapshot& snapshot, Date now, const TimeTexts& times) {
  const bool isFailing = !snapshot.lastCheckinError.empty();
  if (!snapshot.lastCheckinSuccess) {
    return std::string((isFailing ? Copy::checkinFailing : Copy::checkinNever).text());
  }
  auto age = times.relativeAge(*snapshot.lastCheckinSuccess, now);
  return isFailing ? Copy::checkinFailingLastOK.with(age) : age;
}

RowState containersState(const Snapshot& snapshot, const std::vector<std::string>& runningRuntimes) {
  if (const auto block = ContainerBlock::read(snapshot.runtimeTrust)) {
    return weighed(block->text(), snapshot.runtimeTrust);
  }
  if (!runningRuntimes.empty()) {
    return RowState::info(Copy::guardContainersRunning.with(Copy::listJoined(runningRuntimes)));
  }
  return RowState::info(Copy::guardContainersNoneRunning.text());
}

}  // namespace ostrel
