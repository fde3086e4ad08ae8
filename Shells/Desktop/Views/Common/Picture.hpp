#pragma once

#include <expected>
#include <string>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Platform/AgentWindow.hpp"
#include "Platform/Alerts.hpp"
#include "Platform/Log.hpp"
#include "Shells/Desktop/DesktopTheme.hpp"

namespace ostrel {

/// The panel as a PNG file, in the pixels of the first screen; its corners are transparent.
[[nodiscard]] std::expected<std::string, std::string> panelPicture(const PanelContent& content,
                                                                   const DesktopTheme& theme, Log& log);

/// The content of the onboarding window as a PNG file, on a screen with room for it.
[[nodiscard]] std::expected<std::string, std::string> onboardingPicture(const OnboardingContent& content,
                                                                        const DesktopTheme& theme, Log& log);

/// The content of an alert's window as a PNG file.
[[nodiscard]] std::expected<std::string, std::string> alertPicture(const Alert& alert,
                                                                   const DesktopTheme& theme, Log& log);

/// The content of the agent window as a PNG file, in that size.
[[nodiscard]] std::expected<std::string, std::string> agentWindowPicture(const AgentWindowContent& content,
                                                                         const WindowSize& size,
                                                                         const DesktopTheme& theme, Log& log);

}  // namespace ostrel
