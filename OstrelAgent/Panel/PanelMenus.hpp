#pragma once

#include <vector>

#include "OstrelAgent/Panel/StatusPanelActions.hpp"

namespace ostrel {

/// The places with a fixed list of buttons: the panel's header and footer, the footer's "⋯", the status item.
enum class PanelMenu { header, footer, more, statusItem };

/// The buttons of a place whose actions are available.
std::vector<PanelButton> menuButtons(PanelMenu menu, const PanelActionSet& available);

}  // namespace ostrel
