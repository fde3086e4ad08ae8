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

/// User defaults key for the id of the process whose onboarding or repair window is open.
inline constexpr const char* onboardingFlowProcessIdentifierKey = "OnboardingFlowProcessID";

/// The process whose onboarding or repair window is open; nullopt when none is stored or it no longer runs.
std::optional<std::int64_t> runningRepairFlow(const UserDefaults& userDefaults, const Workspace& workspace);

/// Brings that process's window to the front; false, with a log line, when it cannot be reached.
[[nodiscard]] bool bringRepairFlowToFront(std::int64_t process, Workspace& workspace, Log& log);

struct RepairFlowServices {
  const Bundle& bundle;
  const UserDefaults& userDefaults;
  Workspace& workspace;
  ChildProcesses& childProcesses;
  const Clock& clock;
  Log& log;
};

/// Time that a repair flow may take to open its window; until then no second one is started.
inline constexpr std::chrono::milliseconds repairFlowStartTimeout{3000};

/// Brings an open onboarding or repair window to the front, else starts the repair flow as a separate process
/// and stores the time. Logs failures. Main thread.
void openRepairFlow(const RepairFlowServices& services, std::optional<Date>& startedAt);

}  // namespace ostrel
