#pragma once

#include <string>
#include <vector>

#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Shells/Console/WindowButtons.hpp"

namespace ostrel {

struct AgentWindowText {
  std::string text;
  std::vector<WindowButton> buttons;  ///< in the order of their numbers
};

/// The agent window's header and shown page.
AgentWindowText agentWindowText(const AgentWindowContent& content, ButtonMarks marks);

}  // namespace ostrel
