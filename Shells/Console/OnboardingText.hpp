#pragma once

#include <string>

#include "OstrelAgent/Onboarding/OnboardingContent.hpp"

namespace ostrel {

/// The onboarding window as text in lines of at most 80 columns where words allow. Its buttons are numbered
/// as `OnboardingContent::allButtons()` counts them.
std::string onboardingText(const OnboardingContent& content);

}  // namespace ostrel
