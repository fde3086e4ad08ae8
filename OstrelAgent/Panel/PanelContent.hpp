#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Panel/AttentionItems.hpp"
#include "OstrelAgent/Panel/StatusPanelModel.hpp"
#include "OstrelAgent/Text/TextDirection.hpp"

namespace ostrel {

/// Everything the status panel shows, as plain comparable data; every view of the panel draws it.
struct PanelContent {
  struct Header {
    std::string word;
    std::optional<std::string> deadlineLine;
    std::string_view symbol;
    RowState::Case tint = RowState::Case::warn;  ///< ok, warn or bad

    bool operator==(const Header&) const = default;
  };

  struct Update {
    RowState state;  ///< info, or bad when the update is required
    std::string version;
    std::string belowMinimum;  ///< empty when it does not apply
    std::optional<PanelButton> button;
    std::string installing;         ///< empty unless an install runs
    std::string protectionStaysOn;  ///< follows `installing`

    bool operator==(const Update&) const = default;
  };

  struct Row {
    std::string id;
    std::string label;
    RowState state;
    std::string note;                ///< what to do or expect; empty for a row that is ok
    bool isNoteShownOnCard = false;  ///< a card shows the note, so a view may omit it

    bool operator==(const Row&) const = default;
  };

  struct Ecosystem {
    std::string name;
    RowState state;

    bool operator==(const Ecosystem&) const = default;
  };

  /// The protections: Guard with its ecosystems, the egress lock, containers.
  struct Protection {
    Row guard;
    std::vector<Ecosystem> ecosystems;
    std::string offNote;       ///< about ecosystems switched off by policy; empty when none is
    std::string noEcosystems;  ///< why no ecosystem is listed; empty when some are
    Row egressLock;
    Row containers;

    bool operator==(const Protection&) const = default;
  };

  struct Health {
    Row rollup;
    std::vector<Row> components;
    bool startsExpanded = false;  ///< a component needs attention

    bool operator==(const Health&) const = default;
  };

  struct Fact {
    std::string label;
    std::string value;

    bool operator==(const Fact&) const = default;
  };

  struct InFlight {
    bool checkin = false;
    bool diagnostics = false;
    bool sendingDiagnostics = false;
    bool update = false;

    bool operator==(const InFlight&) const = default;
  };

  TextDirection direction = TextDirection::leftToRight;  ///< of the user's language
  Header header;
  std::optional<RowState> statusError;  ///< replaces cards and rows: no status could be read, or none yet
  std::optional<Update> update;
  std::vector<AttentionItem> cards;
  std::optional<Protection> protection;
  std::optional<Health> health;
  std::vector<Fact> facts;  ///< identity, last check-in, version
  std::vector<PanelButton> headerButtons;
  std::vector<PanelButton> footerButtons;
  std::vector<PanelButton> moreButtons;  ///< behind the footer's "⋯"
  std::string moreName;                  ///< accessible name of "⋯"; may be empty
  std::vector<std::string> notices;
  InFlight inFlight;
  double maxHeight = 0;  ///< points

  /// All buttons from top to bottom.
  std::vector<PanelButton> buttons() const;

  bool operator==(const PanelContent&) const = default;
};

/// The panel for a model at a time, with buttons for the available actions only.
PanelContent panelContent(const StatusPanelModel& model, Date now, const TimeTexts& times,
                          const PanelActionSet& available);

}  // namespace ostrel
