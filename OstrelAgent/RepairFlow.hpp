#pragma once

#include <cstdint>
#include <optional>

#include "Platform/UserDefaults.hpp"
#include "Platform/Workspace.hpp"

namespace ostrel {

/// Under this key stands the id of the process whose onboarding or repair window is open.
inline constexpr const char* onboardingFlowProcessIdentifierKey = "OnboardingFlowProcessID";

/// The process whose onboarding or repair window is open; nothing when the id that is stored is that of a
/// process that has died.
std::optional<std::int64_t> runningRepairFlow(const UserDefaults& userDefaults, const Workspace& workspace);

}  // namespace ostrel
