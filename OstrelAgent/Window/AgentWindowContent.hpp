#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "OstrelAgent/Panel/AttentionItems.hpp"
#include "OstrelAgent/Panel/PanelContent.hpp"

namespace ostrel {

/// Everything that the agent window shows with one of its pages, as plain comparable data.
struct AgentWindowContent {
  struct SidebarItem {
    AgentPage page = AgentPage::ecosystems;
    std::string title;
    std::optional<RowState> state;  ///< nullopt on general pages and while no report is known

    bool operator==(const SidebarItem&) const = default;
  };

  struct SidebarSection {
    std::string caption;
    std::vector<SidebarItem> items;

    bool operator==(const SidebarSection&) const = default;
  };

  struct Sidebar {
    PanelContent::Header header;
    std::string enrolment;  ///< empty while no report is known
    std::vector<SidebarSection> sections;

    bool operator==(const Sidebar&) const = default;
  };

  /// A label with its value, and perhaps what can be done about it.
  struct Fact {
    std::string label;
    std::string value;
    RowState::Case kind = RowState::Case::info;  ///< warn or bad for a value in that colour
    std::string addition = {};                   ///< follows the value, in the usual colour
    bool isCode = false;                         ///< drawn in a monospaced font
    std::optional<PanelButton> button = std::nullopt;

    bool operator==(const Fact&) const = default;
  };
  using Facts = std::vector<Fact>;

  struct Ecosystems {
    std::optional<PanelContent::Row> rollup;  ///< of Guard, unless its card is there
    std::optional<AttentionItem> card;        ///< of a Guard that fails
    std::vector<PanelContent::Ecosystem> rows;
    std::string offNote;       ///< about ecosystems switched off by policy; empty when none is
    std::string noEcosystems;  ///< why none is listed; empty when some are
    Facts facts;

    bool operator==(const Ecosystems&) const = default;
  };

  struct EgressLock {
    AttentionItem card;
    Facts facts;

    bool operator==(const EgressLock&) const = default;
  };

  struct Identity {
    Facts device;
    Facts checkin;
    std::string notice;  ///< of the latest check-in; empty when there is none
    Facts version;
    std::string installing;  ///< while an update is installed, else empty

    bool operator==(const Identity&) const = default;
  };

  struct Health {
    struct Component {
      AttentionItem card;
      Facts facts;
      bool startsOpen = false;

      bool operator==(const Component&) const = default;
    };

    Facts facts;
    std::vector<Component> components;

    bool operator==(const Health&) const = default;
  };

  struct Notifications {
    struct Switch {
      std::string label;
      bool isOn = false;
      bool isEnabled = true;

      bool operator==(const Switch&) const = default;
    };

    std::string authorization;  ///< empty until it is known
    std::optional<PageButton> authorizationButton;
    Switch master;
    std::string lede;
    std::string caption;           ///< above the runtimes
    std::vector<Switch> runtimes;  ///< a label is the runtime's name

    bool operator==(const Notifications&) const = default;
  };

  struct Help {
    std::string lede;
    std::vector<PanelButton> buttons;
    std::vector<RowState> notices;

    bool operator==(const Help&) const = default;
  };

  using Body = std::variant<std::monostate, Ecosystems, ContainersPageContent, EgressLock, Identity, Health,
                            Notifications, Help>;

  TextDirection direction = TextDirection::leftToRight;  ///< of the user's language
  Sidebar sidebar;
  AgentPage page = AgentPage::ecosystems;
  std::string title;  ///< of the page
  /// Why no report is known; nullopt when one is. On the containers page it stands above the sections, on the
  /// other pages of the device it is all there is.
  std::optional<RowState> statusError;
  Body body;

  bool operator==(const AgentWindowContent&) const = default;
};

/// What the window shows besides the panel's model.
struct AgentWindowInputs {
  const StatusPanelModel& model;
  const ContainersPage& containers;
  Date now;
  const TimeTexts& times;
  const PanelActionSet& available;  ///< buttons of other actions are not shown
};

/// The name of a page: "egressLock".
std::string_view nameOf(AgentPage page);

/// The page of that name in any case of letters.
std::optional<AgentPage> agentPageNamed(std::string_view name);

AgentWindowContent agentWindowContent(AgentPage page, const AgentWindowInputs& inputs);

}  // namespace ostrel
