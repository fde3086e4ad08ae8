#pragma once

#include <expected>
#include <string>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Status/Verdict.hpp"
#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Platform/Alerts.hpp"
#include "Platform/Bundle.hpp"
#include "Platform/Log.hpp"
#include "Tools/PreviewOptions.hpp"

namespace ostrel {

/// Writes the requested pictures, drawn by the bundle's plug-ins without a display. An error text when one
/// cannot be drawn or written.
[[nodiscard]] std::expected<void, std::string> writePictures(const PreviewOptions& options,
                                                             const ProtectionVerdict& verdict,
                                                             const PanelContent& content,
                                                             const Bundle& bundle, Log& log);

/// Writes the onboarding window's content, likewise.
[[nodiscard]] std::expected<void, std::string> writeOnboardingPicture(const PreviewOptions& options,
                                                                      const OnboardingContent& content,
                                                                      const Bundle& bundle, Log& log);

/// Writes the alert's content, likewise.
[[nodiscard]] std::expected<void, std::string> writeAlertPicture(const PreviewOptions& options,
                                                                 const Alert& alert, const Bundle& bundle,
                                                                 Log& log);

/// Writes what the agent window holds, likewise.
[[nodiscard]] std::expected<void, std::string> writeAgentWindowPicture(const PreviewOptions& options,
                                                                       const AgentWindowContent& content,
                                                                       const Bundle& bundle, Log& log);

}  // namespace ostrel
