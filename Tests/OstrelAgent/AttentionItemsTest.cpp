#include "OstrelAgent/AttentionItems.hpp"

#include <gtest/gtest.h>

#include "OstrelAgent/StatusPanel.hpp"
#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using readings::health;
using readings::healthy;

std::vector<AttentionItem> cards(const Snapshot& snapshot) {
  const auto failure = guardFailure(snapshot);
  const auto guard = guardRollup(snapshot);
  const auto lock = egressLockState(snapshot);
  const auto rows = components(snapshot);
  return attentionItems(snapshot, {failure, guard, lock, rows}, readings::now, readings::times());
}

/// The button of a card, "title action"; empty when the card has none or there is no such card.
std::string buttonOf(const Snapshot& snapshot, std::string_view id) {
  for (const auto& card : cards(snapshot)) {
    if (card.id == id && card.button)
      return card.button->title + ' ' + std::string(nameOf(card.button->action));
  }
  return "";
}

TEST(AttentionItems, TellWhatToDoOrWhenItClears) {
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
    if (row.clears) component.expectedClearBy = readings::now + *row.clears;
    const auto note = [&](const RowState& state) {
      return ComponentNote::make(component, state, readings::now, readings::times());
    };
    EXPECT_EQ(note(RowState::info("")), ComponentNote{row.action});
    EXPECT_EQ(note(RowState::ok("")), std::nullopt);
  }
}

TEST(AttentionItems, StandInTheirOrderAndOnlyForWhatNeedsAttention) {
  EXPECT_TRUE(cards(healthy()).empty());
  auto snapshot = healthy();
  snapshot.sysextActive = snapshot.caTrusted = false;
  snapshot.sysext = health("broken", "red", "SYSEXT_INACTIVE");
  snapshot.egressLock = health("broken", "yellow", "EGRESS_LOCK_PARTIAL");
  snapshot.runtimeTrust = health("broken", "yellow", "CONTAINER_REJECTED_LEAF", {"Podman"});
  snapshot.credential = health("broken", "red");
  snapshot.captureSet = health("", "");
  snapshot.lastCheckinError = "timeout";
  const std::vector<std::string> expected = {
      "guard: Guard, not protecting",
      "egressLock: Egress lock, enforcing, resolving hosts",
      "containers: Blocked in Podman, Blocked in Podman",
      "component.capture: Capture, system extension not running",
      "component.credential: Credential, unavailable",
      "component.runtimeTrust: Runtime trust, Podman (container) rejected the device certificate",
      "component.captureSet: Capture set, not reported",
      "component.deviceCA: Device CA, not trusted",
      "checkin: Last check-in, failing · last ok 5 min ago"};
  std::vector<std::string> found;
  for (const auto& card : cards(snapshot))
    found.push_back(card.id + ": " + card.title + ", " + card.state.text);
  EXPECT_EQ(found, expected);
}

TEST(AttentionItems, SayWhatIsWrongAndWhatToDo) {
  auto snapshot = healthy();
  snapshot.daemonListening = false;
  snapshot.daemon = health("broken", "yellow", "LISTENER_DOWN");
  snapshot.runtimeTrust = health("broken", "red", "APP_REJECTED_LEAF", {"node"});
  const auto items = cards(snapshot);
  ASSERT_EQ(items.size(), 3U);
  EXPECT_EQ(items[0], (AttentionItem{"guard",
                                     RowState::warn("not protecting"),
                                     "Guard",
                                     std::string(Copy::guardConsequenceDaemonDown.text()),
                                     "The agent is not running. Open Ostrel Agent to start it.",
                                     {}}));
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
  EXPECT_EQ(buttonOf(snapshot, "guard"), "Finish setup… openRepairFlow");
  EXPECT_EQ(buttonOf(snapshot, "component.deviceCA"), "Finish setup… openRepairFlow");
  snapshot.caTrustPending = false;
  EXPECT_EQ(buttonOf(snapshot, "guard"), "Turn on network filter enableTransparentProxy");
  EXPECT_EQ(buttonOf(snapshot, "component.deviceCA"), "Re-trust CA… trustDeviceCA");
  for (const auto* code : {"SYSEXT_WAITING_APPROVAL", "SYSEXT_INACTIVE"}) {
    snapshot.sysext.code = code;
    EXPECT_EQ(buttonOf(snapshot, "guard"), "Fix… openRepairFlow") << code;
  }
  snapshot.sysextActive = true;
  EXPECT_FALSE(showsRepair(snapshot));
  EXPECT_EQ(buttonOf(snapshot, "guard"), "");
  snapshot.sysextActive = false;
  snapshot.sysext.code = "SYSEXT_LAGS_DAEMON";
  EXPECT_EQ(buttonOf(snapshot, "guard"), "");
  snapshot.lastCheckinError = "timeout";
  EXPECT_EQ(buttonOf(snapshot, "checkin"), "Check now checkNow");
  snapshot.runtimeTrust = health("broken", "", "CONTAINER_REJECTED_LEAF", {"Podman"});
  EXPECT_EQ(buttonOf(snapshot, "containers"), "Container trust… openAgentWindow");
}

TEST(AttentionItems, OfferTheEgressLockUnlessPolicyOrAProfileDecides) {
  struct Row {
    const char* code;
    const char* severity;
    bool enabled;
    bool managed;
    bool offers;
  };
  constexpr Row rows[] = {
      {"EGRESS_LOCK_NOT_CONFIGURED", "yellow", false, false, true},
      {"EGRESS_LOCK_NOT_CONFIGURED", "info", false, false, false},
      {"EGRESS_LOCK_CONFIGURATION_DISABLED", "info", false, false, false},
      {"EGRESS_LOCK_PARTIAL", "info", false, false, true},
      {"EGRESS_LOCK_NOT_CONFIGURED", "yellow", true, false, false},
      {"EGRESS_LOCK_NOT_CONFIGURED", "yellow", false, true, false},
  };
  for (const auto& row : rows) {
    auto snapshot = healthy();
    snapshot.egressLock = health("broken", row.severity, row.code);
    snapshot.egressLockEnabled = row.enabled;
    snapshot.mdmEnrolled = row.managed;
    EXPECT_EQ(buttonOf(snapshot, "egressLock"), row.offers ? "Enable egress lock… enableEgressLock" : "")
        << row.code << row.severity << row.enabled << row.managed;
  }
}

}  // namespace
}  // namespace ostrel
