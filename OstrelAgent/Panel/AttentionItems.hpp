#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Panel/GuardRow.hpp"
#include "OstrelAgent/Panel/RowState.hpp"
#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "OstrelAgent/Text/TimeTexts.hpp"

namespace ostrel {

/// What the user can do, or expect, about a row that is not ok.
struct ComponentNote {
  std::string action;

  /// The remedy, or when the condition clears by itself.
  static std::string actionFor(const Snapshot::ComponentHealth& health, Date now, const TimeTexts& times);

  /// The note of a row, or nullopt when the row is ok.
  static std::optional<ComponentNote> make(const Snapshot::ComponentHealth& health, const RowState& state,
                                           Date now, const TimeTexts& times);

  bool operator==(const ComponentNote&) const = default;
};

/// A card at the top of the panel: one problem that needs the user.
struct AttentionItem {
  std::string id;
  RowState state;
  std::string title;
  std::string detail;
  std::string action;
  std::optional<PanelButton> button;

  /// What the state adds to title and detail; empty when one of them already says it.
  std::string_view stateText() const {
    const bool isSaid = state.text == title || state.text == detail;
    return isSaid ? std::string_view() : std::string_view(state.text);
  }

  bool operator==(const AttentionItem&) const = default;
};

/// True when trusting the device certificate is the only setup step left.
bool showsFinishSetup(const Snapshot& snapshot);

/// True when the repair window can bring the network extension back.
bool showsRepair(const Snapshot& snapshot);

/// True when the egress lock waits for the user to switch it on.
bool showsEnableEgressLock(const Snapshot& snapshot);

/// The rows from which the cards are made.
struct AttentionRows {
  const std::optional<GuardFailure>& guardFailure;
  const RowState& guard;
  const RowState& egressLock;
  const std::vector<StatusComponent>& components;
};

/// The cards in their order: Guard, egress lock, blocked containers, components, check-in.
std::vector<AttentionItem> attentionItems(const Snapshot& snapshot, const AttentionRows& rows, Date now,
                                          const TimeTexts& times);

}  // namespace ostrel
