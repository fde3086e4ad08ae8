#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "Platform/Bundle.hpp"
#include "Platform/ChildProcesses.hpp"
#include "Platform/Clock.hpp"
#include "Platform/Log.hpp"
#include "Platform/UserDefaults.hpp"
#include "Platform/Workspace.hpp"

namespace ostrel {

/// Under this key stands the id of the process whose onboarding or repair window is open.
inline constexpr const char* onboardingFlowProcessIdentifierKey = "OnboardingFlowProcessID";

/// The process whose onboarding or repair window is open; nothing when the id that is stored is that of a
/// process that has died.
std::optional<std::int64_t> runningRepairFlow(const UserDefaults& userDefaults, const Workspace& workspace);

/// Brings that process's window to the front; when it cannot be reached false, which is told in the log.
[[nodiscard]] bool bringRepairFlowToFront(std::int64_t process, Workspace& workspace, Log& log);

struct RepairFlowServices {
  const Bundle& bundle;
  const UserDefaults& userDefaults;
  Workspace& workspace;
  ChildProcesses& childProcesses;
  const Clock& clock;
  Log& log;
};

/// Longest time from the start of a repair flow to its window; until then a second one is not started.
inline constexpr std::chrono::milliseconds longestRepairFlowStart{3000};

/// Brings the onboarding or repair window that is open to the front, or else starts the repair flow as a
/// process of its own, and notes when. What fails is told in the log. Main thread.
void openRepairFlow(const RepairFlowServices& services, std::optional<Date>& startedAt);

}  // namespace ostrel
