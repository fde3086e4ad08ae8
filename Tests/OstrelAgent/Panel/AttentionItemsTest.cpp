#include "OstrelAgent/Panel/AttentionItems.hpp"

#include <gtest/gtest.h>

#include "OstrelAgent/Panel/StatusPanel.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using builders::health;
using builders::healthy;

std::vector<AttentionItem> cards(const Snapshot& snapshot) {
  const auto failure = guardFailure(snapshot);
  const auto guard = guardRollup(snapshot);
  const auto lock = egressLockState(snapshot);
  const auto rows = components(snapshot);
  return attentionItems(snapshot, {failure, guard, lock, rows}, builders::now, builders::times());
}

/// The buttons of all cards: "guard: Fix… openRepairFlow; ".
std::string buttons(const Snapshot& snapshot) {
  std::string all;
  for (const auto& card : cards(snapshot)) {
    if (!card.button) continue;
    all += card.id + ": " + card.button->title + ' ' + std::string(nameOf(card.button->action)) + "; ";
  }
  return all;
}

TEST(AttentionItems, SayWhatToDoOrWhenItClears) {
  struct Row {
    const char* code;
    bool selfHealing;
    std::optional<std::chrono::milliseconds> clears;
    const char* action;
  };
  const Row rows[] = {
      {"SYSEXT_REACTIVATE_PENDING", true, {}, "The next login re-activates it."},
      {"", true, {}, "This clears on its own. Nothing to do."},
      {"", false, {}, "Ask your administrator if this does not clear."},
      {"SYSEXT_REACTIVATE_PENDING", false, 1ms, "Usually clears on its own by 10:00 AM."},
      {"SYSEXT_REACTIVATE_PENDING", true, 0ms,
       "Hasn't cleared on its own yet. The next login re-activates it."},
      {"", true, -1h, "Hasn't cleared on its own yet. Ask your administrator if this does not clear."},
  };
  for (const auto& row : rows) {
    auto component = health("broken", "", row.code);
    component.selfHealing = row.selfHealing;
    if (row.clears) component.expectedClearBy = builders::now + *row.clears;
    EXPECT_EQ(ComponentNote::actionFor(component, builders::now, builders::times()), row.action);
  }
}

TEST(AttentionItems, AreOrderedAndOnlyForWhatNeedsAttention) {
  EXPECT_TRUE(cards(healthy()).empty());
  auto snapshot = healthy();
  snapshot.sysextActive = snapshot.caTrusted = false;
  snapshot.egressLock = health("broken", "yellow", "EGRESS_LOCK_PARTIAL");
  snapshot.runtimeTrust = health("broken", "yellow", "CONTAINER_REJECTED_LEAF", {"Podman"});
  snapshot.credential = health("broken", "red");
  snapshot.captureSet = health("");
  snapshot.lastCheckinError = "timeout";
  std::string found;
  for (const auto& card : cards(snapshot))
    found += card.id + ": " + card.title + " " + card.state.text + "\n";
  EXPECT_EQ(found,
            "guard: Guard not protecting\n"
            "egressLock: Egress lock enforcing, resolving hosts\n"
            "containers: Blocked in Podman Blocked in Podman\n"
            "component.capture: Capture system extension not running\n"
            "component.credential: Credential unavailable\n"
            "component.runtimeTrust: Runtime trust Podman (container) rejected the device certificate\n"
            "component.captureSet: Capture set not reported\n"
            "component.deviceCA: Device CA not trusted\n"
            "checkin: Last check-in failing · last ok 5 min ago\n");
}

TEST(AttentionItems, SayWhatIsWrongAndWhatToDo) {
  auto snapshot = healthy();
  snapshot.daemonListening = false;
  snapshot.daemon = health("broken", "yellow", "LISTENER_DOWN");
  snapshot.runtimeTrust = health("broken", "red", "APP_REJECTED_LEAF", {"node"});
  const auto items = cards(snapshot);
  ASSERT_EQ(items.size(), 3U);
  EXPECT_EQ(items[0].detail, Copy::guardConsequenceDaemonDown.text());
  EXPECT_EQ(items[0].action, "The agent is not running. Open Ostrel Agent to start it.");
  EXPECT_TRUE(items[1].detail.starts_with("The agent's background service is not running"));
  EXPECT_EQ(items[2].detail, "node rejected the device certificate");
  EXPECT_EQ(items[2].action, "Restart the program named above.");
  snapshot.runtimeTrust.detail = "node refused it.";
  EXPECT_EQ(cards(snapshot)[2].detail, "node refused it.");
}

TEST(AttentionItems, OfferTheButtonThatHelps) {
  auto snapshot = healthy();
  snapshot.sysextActive = snapshot.caTrusted = false;
  snapshot.caTrustPending = true;
  snapshot.sysext.code = "SYSEXT_PROXY_DISABLED";
  EXPECT_EQ(buttons(snapshot),
            "guard: Finish setup… openRepairFlow; component.deviceCA: Finish setup… openRepairFlow; ");
  snapshot.caTrustPending = false;
  EXPECT_EQ(buttons(snapshot),
            "guard: Turn on network filter enableTransparentProxy; "
            "component.deviceCA: Re-trust CA… trustDeviceCA; ");
  snapshot.caTrusted = true;
  for (const auto* code : {"SYSEXT_WAITING_APPROVAL", "SYSEXT_INACTIVE"}) {
    snapshot.sysext.code = code;
    EXPECT_EQ(buttons(snapshot), "guard: Fix… openRepairFlow; ");
  }
  snapshot.daemonListening = false;
  snapshot.sysextActive = true;
  EXPECT_EQ(buttons(snapshot), "");
  snapshot.sysextActive = false;
  snapshot.sysext.code = "SYSEXT_LAGS_DAEMON";
  EXPECT_EQ(buttons(snapshot), "");
  snapshot.lastCheckinError = "timeout";
  snapshot.runtimeTrust = health("broken", "", "CONTAINER_REJECTED_LEAF", {"Podman"});
  EXPECT_EQ(buttons(snapshot), "containers: Container trust… openAgentWindow; checkin: Check now checkNow; ");
}

TEST(AttentionItems, OfferTheEgressLockUnlessPolicyOrAProfileDecides) {
  auto snapshot = healthy();
  snapshot.egressLockEnabled = false;
  const auto offers = [&](const char* code, const char* severity) {
    snapshot.egressLock = health("broken", severity, code);
    return buttons(snapshot) == "egressLock: Enable egress lock… enableEgressLock; ";
  };
  EXPECT_TRUE(offers("EGRESS_LOCK_NOT_CONFIGURED", "yellow"));
  EXPECT_TRUE(offers("EGRESS_LOCK_PARTIAL", "info"));
  EXPECT_FALSE(offers("EGRESS_LOCK_NOT_CONFIGURED", "info"));
  EXPECT_FALSE(offers("EGRESS_LOCK_CONFIGURATION_DISABLED", "info"));
  snapshot.egressLockEnabled = true;
  EXPECT_FALSE(offers("EGRESS_LOCK_NOT_CONFIGURED", "yellow"));
  snapshot.egressLockEnabled = false;
  snapshot.mdmEnrolled = true;
  EXPECT_FALSE(offers("EGRESS_LOCK_NOT_CONFIGURED", "yellow"));
}

}  // namespace
}  // namespace ostrel
