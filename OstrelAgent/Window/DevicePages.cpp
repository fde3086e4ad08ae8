// The pages of the device that show what a report says.

#include <algorithm>
#include <array>

#include "OstrelAgent/Panel/StatusPanel.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Window/WindowPages.hpp"

namespace ostrel::windowpages {

namespace {

using Content = AgentWindowContent;
using Case = RowState::Case;

std::string yesOrNo(bool isYes) { return std::string((isYes ? Copy::factYes : Copy::factNo).text()); }

/// Collects facts; one without a value is left out.
class FactList {
 public:
  FactList& add(const Message& label, std::string value, Case kind = Case::info) {
    if (!value.empty()) facts_.push_back({std::string(label.text()), std::move(value), kind});
    return *this;
  }
  FactList& add(const Message& label, bool isYes) { return add(label, yesOrNo(isYes)); }
  FactList& code(const std::string& code) {
    add(Copy::factCode, code);
    if (!code.empty()) facts_.back().isCode = true;
    return *this;
  }
  /// What follows the value of the last fact.
  FactList& addition(std::string text) {
    facts_.back().addition = std::move(text);
    return *this;
  }
  /// The button of the last fact.
  FactList& button(std::optional<PanelButton> button) {
    facts_.back().button = std::move(button);
    return *this;
  }
  /// Whether and when a condition clears by itself; nothing for one that is ok.
  FactList& clearing(const Snapshot::ComponentHealth& health, const RowState& state, const TimeTexts& times) {
    if (state.isOk()) return *this;
    add(Copy::factSelfHealing, health.selfHealing);
    if (health.expectedClearBy) add(Copy::factClearsBy, times.clockTime(*health.expectedClearBy));
    return *this;
  }
  Content::Facts take() { return std::move(facts_); }

 private:
  Content::Facts facts_;
};

std::optional<AttentionItem> cardOf(const PanelContent& panel, std::string_view id) {
  const auto card = std::ranges::find(panel.cards, id, &AttentionItem::id);
  return card == panel.cards.end() ? std::nullopt : std::optional(*card);
}

/// The card of a row, which may be ok.
AttentionItem cardOrState(const PanelContent& panel, std::string_view id, std::string_view title,
                          const RowState& state, const Snapshot::ComponentHealth& health) {
  if (auto card = cardOf(panel, id)) return *std::move(card);
  return {.id = std::string(id),
          .state = state,
          .title = std::string(title),
          .detail = Copy::componentDetail(health.code, health.detail, health.params),
          .action = {},
          .button = std::nullopt};
}

std::optional<PanelButton> buttonFor(PanelAction action, const AgentWindowInputs& inputs) {
  if (!inputs.available.contains(action)) return std::nullopt;
  return PanelButton::of(action).during(inputs.model);
}

/// The codes that say whether the lock denies traffic now; the others say nothing about it.
struct LockCode {
  std::string_view code;
  bool isEnforced;
};
constexpr std::array lockCodes = {
    LockCode{"EGRESS_LOCK_ENFORCING", true},           LockCode{"EGRESS_LOCK_PARTIAL", true},
    LockCode{"EGRESS_LOCK_AWAITING_ASSERTION", false}, LockCode{"EGRESS_LOCK_ASSERTION_STALLED", false},
    LockCode{"EGRESS_LOCK_PERMITS_NOTHING", false},    LockCode{"EGRESS_LOCK_CONFIGURATION_DISABLED", false},
    LockCode{"EGRESS_LOCK_NOT_CONFIGURED", false},     LockCode{"EGRESS_LOCK_PROVIDER_STOPPED", false},
    LockCode{"EGRESS_LOCK_REPORT_FORGED", false},      LockCode{"EGRESS_LOCK_RECORD_CONTRADICTED", false},
};

Content::Facts ecosystemFacts(const Snapshot& snapshot, bool hasFailed) {
  FactList facts;
  std::vector<std::string> enforced;
  for (const auto& row : ecosystemRows(snapshot)) {
    if (row.state.isOk()) enforced.push_back(row.id);
  }
  if (hasFailed) {
    facts.add(Copy::factEnforced, false);
  } else {
    facts.add(Copy::factEnforced, Copy::listJoined(enforced));
  }
  facts.add(Copy::factUncovered, Copy::listJoined(snapshot.uncoveredEcosystems));
  return facts.add(Copy::factPolicyDirectFlows, std::to_string(snapshot.policyDirectFlows)).take();
}

/// "Update available · 4.13.0", in the colour of a required one.
void addUpdate(FactList& facts, const AgentWindowInputs& inputs, const PanelContent& panel) {
  const auto& reported = inputs.model.snap.update;
  if (panel.update) {
    const auto& block = *panel.update;
    const auto version = block.version.empty() ? std::string() : " · " + block.version;
    facts.add(Copy::factUpdate, block.state.text, block.state.kind).addition(version).button(block.button);
  }
  if (reported) facts.add(Copy::factMinimumVersion, reported->minimumSupportedVersion.value_or(""));
}

}  // namespace

Content::Ecosystems ecosystems(const AgentWindowInputs& inputs, const PanelContent& panel) {
  const auto& protection = *panel.protection;
  Content::Ecosystems page;
  page.card = cardOf(panel, "guard");
  page.rows = protection.ecosystems;
  page.noEcosystems = protection.noEcosystems;
  page.facts = ecosystemFacts(inputs.model.snap, page.card.has_value());
  if (!page.card) {
    page.rollup = protection.guard;
    page.offNote = protection.offNote;
    return page;
  }
  // While Guard fails, nothing is said of an ecosystem's state, also not by the order.
  for (auto& row : page.rows) row.state = RowState::info("");
  std::ranges::sort(page.rows, {}, &PanelContent::Ecosystem::name);
  return page;
}

Content::EgressLock egressLock(const AgentWindowInputs& inputs, const PanelContent& panel) {
  const auto& snapshot = inputs.model.snap;
  const auto& lock = snapshot.egressLock;
  const auto& row = panel.protection->egressLock;
  FactList facts;
  facts.add(Copy::factEnabled, snapshot.egressLockEnabled);
  const auto* known = std::ranges::find(lockCodes, lock.code, &LockCode::code);
  if (known != lockCodes.end()) facts.add(Copy::factEnforced, known->isEnforced);
  facts.code(lock.code).clearing(lock, row.state, inputs.times);
  return {cardOrState(panel, row.id, row.label, row.state, lock), facts.take()};
}

Content::Identity identity(const AgentWindowInputs& inputs, const PanelContent& panel) {
  const auto& snapshot = inputs.model.snap;
  const auto credential = credentialState(snapshot);
  const auto checkinKind = snapshot.lastCheckinError.empty() ? Case::info : Case::warn;
  Content::Identity page;
  page.device = FactList()
                    .add(Copy::factEnrolled, snapshot.enrolled || snapshot.tokenPresent)
                    .add(Copy::rowIdentity, credential.text, credential.kind)
                    .add(Copy::identityToken, snapshot.tokenMasked)
                    .add(Copy::factTokenManaged, snapshot.tokenManaged)
                    .add(Copy::factManagedByMDM, snapshot.mdmEnrolled)
                    .take();
  page.checkin = FactList()
                     .add(Copy::rowLastCheckin, checkinFact(snapshot, inputs.now, inputs.times), checkinKind)
                     .button(buttonFor(PanelAction::checkNow, inputs))
                     .add(Copy::factLastCheckinError, snapshot.lastCheckinError)
                     .take();
  page.notice = inputs.model.checkinNotice.value_or("");
  FactList version;
  version.add(Copy::rowVersion, snapshot.version);
  addUpdate(version, inputs, panel);
  page.version = version.take();
  if (panel.update) page.installing = panel.update->installing;
  return page;
}

Content::Health health(const AgentWindowInputs& inputs, const PanelContent& panel) {
  const auto& snapshot = inputs.model.snap;
  const auto kindOf = [](bool isYes) { return isYes ? Case::info : Case::bad; };
  Content::Health page;
  for (const auto& [label, isYes] : {std::pair(&Copy::factDaemonListening, snapshot.daemonListening),
                                     std::pair(&Copy::factSysextActive, snapshot.sysextActive),
                                     std::pair(&Copy::factCaTrusted, snapshot.caTrusted)}) {
    page.facts.push_back({std::string(label->text()), yesOrNo(isYes), kindOf(isYes)});
  }
  for (const auto& component : components(snapshot)) {
    auto card =
        cardOrState(panel, component.id, component.name.value_or(""), component.state, component.health);
    if (component.id == Copy::componentCapture.key && !component.state.isOk()) {
      if (const auto guard = cardOf(panel, "guard")) card.button = guard->button;
    }
    auto facts = FactList()
                     .code(component.health.code)
                     .clearing(component.health, component.state, inputs.times)
                     .take();
    page.components.push_back({std::move(card), std::move(facts), component.state.wantsAttention()});
  }
  return page;
}

}  // namespace ostrel::windowpages
