#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"

namespace ostrel {

/// The names of the stages that the onboarding window can be shown at, in the order of a setup.
std::span<const std::string_view> onboardingStageNames();

/// The window's content at the stage of that name; nullopt for an unknown name.
std::optional<OnboardingContent> onboardingAt(std::string_view stage);

}  // namespace ostrel
