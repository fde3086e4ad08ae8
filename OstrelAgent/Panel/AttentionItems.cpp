#include "OstrelAgent/Panel/AttentionItems.hpp"

#include <algorithm>
#include <array>

#include "OstrelAgent/Containers/ContainerBlock.hpp"
#include "OstrelAgent/Panel/StatusPanel.hpp"
#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

using Health = Snapshot::ComponentHealth;

std::string detailOf(const Health& health) {
  return Copy::componentDetail(health.code, health.detail, health.params);
}

std::optional<PanelButton> guardButton(const Snapshot& snapshot) {
  if (showsFinishSetup(snapshot))
    return PanelButton::of(PanelAction::openRepairFlow, Copy::buttonFinishSetup);
  if (snapshot.sysext.code == "SYSEXT_PROXY_DISABLED") {
    return PanelButton::of(PanelAction::enableTransparentProxy);
  }
  if (showsRepair(snapshot)) return PanelButton::of(PanelAction::openRepairFlow);
  return std::nullopt;
}

std::optional<PanelButton> deviceCAButton(const Snapshot& snapshot) {
  if (showsFinishSetup(snapshot))
    return PanelButton::of(PanelAction::openRepairFlow, Copy::buttonFinishSetup);
  if (!snapshot.caTrusted) return PanelButton::of(PanelAction::trustDeviceCA);
  return std::nullopt;
}

AttentionItem guardCard(const Snapshot& snapshot, const GuardFailure& failure, const RowState& state) {
  const auto& cause = failure.component;
  return {.id = "guard",
          .state = state,
          .title = std::string(Copy::featureGuard.text()),
          .detail = failure.consequence,
          .action = Copy::remedy(cause.code, cause.params).value_or(""),
          .button = guardButton(snapshot)};
}

AttentionItem egressLockCard(const Snapshot& snapshot, const RowState& state, const ComponentNote& note) {
  AttentionItem card{.id = "egressLock",
                     .state = state,
                     .title = std::string(Copy::featureEgressLock.text()),
                     .detail = detailOf(snapshot.egressLock),
                     .action = note.action,
                     .button = std::nullopt};
  if (showsEnableEgressLock(snapshot)) {
    card.button = PanelButton::of(PanelAction::enableEgressLock);
  }
  return card;
}

AttentionItem containersCard(const Snapshot& snapshot, const ContainerBlock& block, Date now,
                             const TimeTexts& times) {
  return {.id = "containers",
          .state = containersState(snapshot, {}),
          .title = block.text(),
          .detail = detailOf(snapshot.runtimeTrust),
          .action = ComponentNote::actionFor(snapshot.runtimeTrust, now, times),
          .button = PanelButton::opening(AgentPage::containers)};
}

AttentionItem componentCard(const Snapshot& snapshot, const StatusComponent& component, Date now,
                            const TimeTexts& times) {
  AttentionItem card{.id = component.id,
                     .state = component.state,
                     .title = component.name.value_or(""),
                     .detail = detailOf(component.health),
                     .action = ComponentNote::actionFor(component.health, now, times),
                     .button = std::nullopt};
  if (component.id == Copy::componentRuntimeTrust.key && card.detail.empty())
    card.detail = component.state.text;
  if (component.id == Copy::componentDeviceCA.key) card.button = deviceCAButton(snapshot);
  return card;
}

AttentionItem checkinCard(const Snapshot& snapshot, Date now, const TimeTexts& times) {
  return {.id = "checkin",
          .state = RowState::warn(checkinFact(snapshot, now, times)),
          .title = std::string(Copy::rowLastCheckin.text()),
          .detail = snapshot.lastCheckinError,
          .action = "",
          .button = PanelButton::of(PanelAction::checkNow)};
}

bool isEgressLockOffByPolicy(const Health& lock) {
  return lock.severity == "info" &&
         (lock.code == "EGRESS_LOCK_NOT_CONFIGURED" || lock.code == "EGRESS_LOCK_CONFIGURATION_DISABLED");
}

}  // namespace

std::string ComponentNote::actionFor(const Health& health, Date now, const TimeTexts& times) {
  const auto remedy = Copy::remedy(health.code, health.params);
  const auto askAdmin = Copy::noteActionAskAdmin.text();
  if (!health.expectedClearBy) {
    const auto otherwise = health.selfHealing ? Copy::noteActionClearsOnItsOwn.text() : askAdmin;
    return remedy.value_or(std::string(otherwise));
  }
  if (*health.expectedClearBy > now) {
    return Copy::noteActionClearBy.with(times.clockTime(*health.expectedClearBy));
  }
  return Copy::noteActionOverdue.with(remedy.value_or(std::string(askAdmin)));
}

std::optional<ComponentNote> ComponentNote::make(const Health& health, const RowState& state, Date now,
                                                 const TimeTexts& times) {
  if (state.isOk()) return std::nullopt;
  return ComponentNote{actionFor(health, now, times)};
}

bool showsFinishSetup(const Snapshot& snapshot) { return snapshot.caTrustPending && !snapshot.caTrusted; }

bool showsRepair(const Snapshot& snapshot) {
  const auto& code = snapshot.sysext.code;
  const bool isRepairable = code == "SYSEXT_WAITING_APPROVAL" || code == "SYSEXT_INACTIVE";
  return !showsFinishSetup(snapshot) && !snapshot.sysextActive && isRepairable;
}

bool showsEnableEgressLock(const Snapshot& snapshot) {
  return !isEgressLockOffByPolicy(snapshot.egressLock) && !snapshot.egressLockEnabled &&
         !snapshot.mdmEnrolled;
}

std::vector<AttentionItem> attentionItems(const Snapshot& snapshot, const AttentionRows& rows, Date now,
                                          const TimeTexts& times) {
  std::vector<AttentionItem> cards;
  if (rows.guardFailure) cards.push_back(guardCard(snapshot, *rows.guardFailure, rows.guard));
  if (const auto note = ComponentNote::make(snapshot.egressLock, rows.egressLock, now, times)) {
    cards.push_back(egressLockCard(snapshot, rows.egressLock, *note));
  }
  if (const auto block = ContainerBlock::read(snapshot.runtimeTrust)) {
    cards.push_back(containersCard(snapshot, *block, now, times));
  }
  for (const auto& component : rows.components) {
    if (!component.state.isOk()) cards.push_back(componentCard(snapshot, component, now, times));
  }
  if (!snapshot.lastCheckinError.empty()) cards.push_back(checkinCard(snapshot, now, times));
  return cards;
}

}  // namespace ostrel
