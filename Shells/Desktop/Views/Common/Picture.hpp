#pragma once

#include <expected>
#include <string>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"
#include "OstrelAgent/Panel/PanelContent.hpp"
#include "Platform/Alerts.hpp"
#include "Platform/Log.hpp"
#include "Shells/Desktop/DesktopLook.hpp"

namespace ostrel {

/// The panel as a PNG file, in the pixels of the first screen; its corners are transparent.
[[nodiscard]] std::expected<std::string, std::string> panelPicture(const PanelContent& content,
                                                                   const DesktopLook& look, Log& log);

/// What the onboarding window holds, likewise, on a screen with room for it.
[[nodiscard]] std::expected<std::string, std::string> onboardingPicture(const OnboardingContent& content,
                                                                        const DesktopLook& look, Log& log);

/// What an alert's window holds, likewise.
[[nodiscard]] std::expected<std::string, std::string> alertPicture(const Alert& alert,
                                                                   const DesktopLook& look, Log& log);

}  // namespace ostrel
