#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "OstrelAgent/Panel/StatusPanelModel.hpp"
#include "OstrelAgent/Text/Json.hpp"

namespace ostrel {

/// The agent's status after one document of the input, and its time.
struct PreviewReading {
  StatusPanelModel model;
  std::optional<Date> now;  ///< from the document
};

/// Parses the text of a time at that path of a document.
[[nodiscard]] std::expected<Date, JsonError> readPreviewTime(std::string path, std::string_view text);

/// Reads a bare status report, or an object that adds the agent's other inputs to "report": "helper_status",
/// "transparent_proxies" [{"enabled", "connected"}], "egress_filter" {"provider", "enabled"}, "mdm_enrolled",
/// "running_container_runtimes" and "now". Missing network state is derived from the report's extension and
/// lock. A "helper_status" without report is a helper with unreadable output.
[[nodiscard]] std::expected<PreviewReading, JsonError> readPreviewDocument(std::string_view bytes);

}  // namespace ostrel
