#pragma once

#include <string>

#include "OstrelAgent/Window/AgentWindowContent.hpp"

namespace ostrel {

/// The agent window's header and shown page.
std::string agentWindowText(const AgentWindowContent& content);

}  // namespace ostrel
