#pragma once

#include "OstrelAgent/Window/AgentWindowContent.hpp"

/// The pages of the agent window. Those of the device need a known report; `panel` is its panel.
namespace ostrel::windowpages {

AgentWindowContent::Ecosystems ecosystems(const AgentWindowInputs& inputs, const PanelContent& panel);
AgentWindowContent::EgressLock egressLock(const AgentWindowInputs& inputs, const PanelContent& panel);
AgentWindowContent::Identity identity(const AgentWindowInputs& inputs, const PanelContent& panel);
AgentWindowContent::Health health(const AgentWindowInputs& inputs, const PanelContent& panel);
AgentWindowContent::Notifications notifications(const ContainersPage& containers);
AgentWindowContent::Help help(const AgentWindowInputs& inputs);

}  // namespace ostrel::windowpages
