#pragma once

#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "Platform/AgentWindow.hpp"

namespace ostrel {

/// What the agent window keeps over its closing and over a restart.
struct AgentWindowModel {
  static constexpr WindowSize firstSize{780, 540};
  static constexpr WindowSize smallestSize{620, 360};

  AgentPage page = AgentPage::ecosystems;
  WindowSize size = firstSize;

  bool operator==(const AgentWindowModel&) const = default;
};

}  // namespace ostrel
