#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>

#include "OstrelAgent/Window/AgentWindowContent.hpp"

namespace ostrel {

/// The containers page of a Mac that runs the model's runtimes, with the block of its report.
ContainersPage previewContainersPage(const StatusPanelModel& model);

/// The agent window with one of its pages as one JSON object; absent values are null.
nlohmann::ordered_json agentWindowJson(const AgentWindowContent& content, const ContainersPage& containers);

}  // namespace ostrel
