#pragma once

#include <nlohmann/json_fwd.hpp>

#include "OstrelAgent/PanelContent.hpp"
#include "OstrelAgent/Verdict.hpp"

namespace ostrel {

/// Verdict, icon and panel as one JSON object; absent values are null.
nlohmann::ordered_json previewJson(const ProtectionVerdict& verdict, const PanelContent& content);

}  // namespace ostrel
