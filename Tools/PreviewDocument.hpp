#pragma once

#include <expected>
#include <optional>
#include <string_view>

#include "OstrelAgent/Panel/StatusPanelModel.hpp"
#include "OstrelAgent/Text/Json.hpp"

namespace ostrel {

/// What the agent would know after reading one document of the input, and when.
struct PreviewReading {
  StatusPanelModel model;
  std::optional<Date> now;  ///< as the document gives it
};

/// Reads a bare status report, or an object that adds to "report" what the agent learns elsewhere:
/// "helper_status", "transparent_proxies" [{"enabled", "connected"}], "egress_filter" {"provider",
/// "enabled"}, "mdm_enrolled", "running_container_runtimes" and "now". Network state that is not given is
/// taken from what the report says of extension and lock. A status without a report is that of a helper whose
/// output cannot be read.
[[nodiscard]] std::expected<PreviewReading, JsonError> readPreviewDocument(std::string_view bytes);

}  // namespace ostrel
