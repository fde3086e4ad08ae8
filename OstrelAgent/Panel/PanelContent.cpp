#include "OstrelAgent/Panel/PanelContent.hpp"

#include <algorithm>

#include "OstrelAgent/Containers/ContainerBlock.hpp"
#include "OstrelAgent/Panel/PanelHeader.hpp"
#include "OstrelAgent/Panel/PanelMenus.hpp"
#include "OstrelAgent/Panel/StatusPanel.hpp"
#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

namespace {

/// A settling device is degraded, so it is amber, too.
RowState::Case tintOf(MenuBarBadge badge) {
  switch (badge) {
    case MenuBarBadge::dot:
      return RowState::Case::ok;
    case MenuBarBadge::square:
      return RowState::Case::warn;
    case MenuBarBadge::octagon:
      return RowState::Case::bad;
  }
  return RowState::Case::warn;
}

/// Computes one content; its members are the inputs of all parts.
class PanelContentBuilder {
 public:
  PanelContentBuilder(const StatusPanelModel& model, Date now, const TimeTexts& times,
                      const PanelActionSet& available)
      : model_(model), snap_(model.snap), now_(now), times_(times), available_(available) {}

  PanelContent content() const {
    PanelContent content;
    // One word for all verdicts, so that the text direction does not change with the verdict.
    content.direction = directionOf(Copy::verdictProtected.text());
    content.header = header();
    content.update = update();
    if (snap_.statusError) {
      content.statusError = RowState::warn(*snap_.statusError);
    } else if (!model_.hasReading) {
      content.statusError = RowState::info(Copy::statusChecking.text());
    } else {
      addRows(content);
    }
    content.facts = facts();
    content.headerButtons = shown(PanelMenu::header);
    content.footerButtons = shown(PanelMenu::footer);
    content.moreButtons = shown(PanelMenu::more);
    // The catalogue has no word for "more"; the agent window uses this one as the title of its general page.
    if (!content.moreButtons.empty()) content.moreName = Copy::windowSectionGeneral.text();
    content.notices = notices();
    content.inFlight = {model_.checkinInFlight, model_.diagnosticsInFlight, model_.sendDiagnosticsInFlight,
                        model_.updateInFlight};
    content.maxHeight = model_.panelMaxHeight;
    return content;
  }

 private:
  PanelContent::Header header() const {
    const auto verdict = ProtectionVerdict::of(snap_);
    const auto sign = VerdictSymbols::of(verdict);
    auto reading = PanelHeaderReading::read(verdict, snap_, now_, times_);
    return {std::move(reading.word), std::move(reading.deadlineLine), sign.symbol, tintOf(sign.badge)};
  }

  std::optional<PanelContent::Update> update() const {
    if (!snap_.update) return std::nullopt;
    const auto& update = *snap_.update;
    const bool isRequired = update.state == "eol";
    if (!isRequired && update.state != "available") return std::nullopt;
    PanelContent::Update block;
    block.state = isRequired ? RowState::bad(Copy::updateRequired.text())
                             : RowState::info(Copy::updateAvailable.text());
    block.version = update.latestVersion.value_or("");
    const auto minimum = update.minimumSupportedVersion.value_or("");
    if (isRequired && !minimum.empty()) block.belowMinimum = Copy::updateBelowMinimum.with(minimum);
    if (model_.updateInFlight) {
      block.installing = Copy::updateInstalling.text();
      block.protectionStaysOn = Copy::footerProtectionStaysOn.text();
    } else {
      block.button = ifAvailable(PanelButton::of(PanelAction::installUpdate));
    }
    return block;
  }

  void addRows(PanelContent& content) const {
    const auto failure = guardFailure(snap_);
    const auto ecosystems = ecosystemRows(snap_);
    const auto guard = guardRollup(failure, ecosystems);
    const auto lock = egressLockState(snap_);
    const auto rows = components(snap_);
    content.cards = attentionItems(snap_, {failure, guard, lock, rows}, now_, times_);
    for (auto& card : content.cards) {
      if (card.button) card.button = ifAvailable(card.button->during(model_));
    }
    content.protection = protection(failure.has_value(), guard, ecosystems, lock);
    content.health = health(rows);
    markNote(content.protection->egressLock, content.cards);
    for (auto& component : content.health->components) markNote(component, content.cards);
  }

  static void markNote(PanelContent::Row& row, const std::vector<AttentionItem>& cards) {
    row.isNoteShownOnCard = !row.note.empty() && std::ranges::any_of(cards, [&](const auto& card) {
      return card.title == row.label && card.action == row.note;
    });
  }

  PanelContent::Protection protection(bool hasFailed, const RowState& guard,
                                      const std::vector<StatusComponent>& ecosystems,
                                      const RowState& lock) const {
    PanelContent::Protection protection;
    protection.guard = {"guard", std::string(Copy::featureGuard.text()), guard, ""};
    for (const auto& ecosystem : ecosystems) protection.ecosystems.push_back({ecosystem.id, ecosystem.state});
    const auto off = offEcosystemNames(snap_);
    if (!off.empty()) protection.offNote = Copy::offNote(off, snap_.policyDirectFlows);
    if (ecosystems.empty() && !hasFailed) protection.noEcosystems = Copy::guardEcoNoReport.text();
    protection.egressLock = {"egressLock", std::string(Copy::featureEgressLock.text()), lock,
                             noteOf(snap_.egressLock, lock)};
    protection.containers = {"containers", std::string(Copy::windowPageContainers.text()),
                             containersState(snap_, model_.runningContainerRuntimes), ""};
    return protection;
  }

  PanelContent::Health health(const std::vector<StatusComponent>& rows) const {
    PanelContent::Health health;
    health.rollup = {"health", std::string(Copy::rowHealth.text()), healthRollup(rows), ""};
    for (const auto& row : rows) {
      health.components.push_back({row.id, row.name.value_or(""), row.state, noteOf(row.health, row.state)});
      if (row.state.wantsAttention()) health.startsExpanded = true;
    }
    return health;
  }

  std::string noteOf(const Snapshot::ComponentHealth& health, const RowState& state) const {
    const auto note = ComponentNote::make(health, state, now_, times_);
    return note ? note->action : std::string();
  }

  std::vector<PanelContent::Fact> facts() const {
    const auto version =
        snap_.version.empty() ? Copy::versionUnknown.text() : std::string_view(snap_.version);
    return {{std::string(Copy::rowIdentity.text()), credentialState(snap_).text},
            {std::string(Copy::rowLastCheckin.text()), checkinFact(snap_, now_, times_)},
            {std::string(Copy::rowVersion.text()), std::string(version)}};
  }

  std::vector<std::string> notices() const {
    std::vector<std::string> notices;
    for (const auto& notice : {model_.checkinNotice, model_.diagnosticsNotice, model_.sendDiagnosticsError}) {
      if (notice) notices.push_back(*notice);
    }
    if (model_.diagnosticsSentAt) {
      notices.push_back(Copy::noticeDiagnosticsSent.with(times_.clockTime(*model_.diagnosticsSentAt)));
    }
    return notices;
  }

  std::optional<PanelButton> ifAvailable(PanelButton button) const {
    if (!available_.contains(button.action)) return std::nullopt;
    return button;
  }

  std::vector<PanelButton> shown(PanelMenu menu) const {
    auto buttons = menuButtons(menu, available_);
    for (auto& button : buttons) button = button.during(model_);
    return buttons;
  }

  const StatusPanelModel& model_;
  const Snapshot& snap_;
  Date now_;
  const TimeTexts& times_;
  const PanelActionSet& available_;
};

}  // namespace

std::vector<PanelButton> PanelContent::buttons() const {
  std::vector<PanelButton> all = headerButtons;
  if (update && update->button) all.push_back(*update->button);
  for (const auto& card : cards) {
    if (card.button) all.push_back(*card.button);
  }
  all.insert(all.end(), footerButtons.begin(), footerButtons.end());
  all.insert(all.end(), moreButtons.begin(), moreButtons.end());
  return all;
}

PanelContent panelContent(const StatusPanelModel& model, Date now, const TimeTexts& times,
                          const PanelActionSet& available) {
  return PanelContentBuilder(model, now, times, available).content();
}

}  // namespace ostrel
