#pragma once

#include <nlohmann/json_fwd.hpp>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Status/Verdict.hpp"

namespace ostrel {

/// The snapshot's verdict and icon, and its panel, as one JSON object; absent values are null.
nlohmann::ordered_json previewJson(const Snapshot& snapshot, const PanelContent& content);

}  // namespace ostrel
