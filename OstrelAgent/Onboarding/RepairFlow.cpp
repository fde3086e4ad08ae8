#include "OstrelAgent/Onboarding/RepairFlow.hpp"

namespace ostrel {

std::optional<std::int64_t> runningRepairFlow(const UserDefaults& userDefaults, const Workspace& workspace) {
  const auto process = userDefaults.get<std::int64_t>(onboardingFlowProcessIdentifierKey);
  if (!process || !workspace.isRunning(*process)) return std::nullopt;
  return process;
}

bool bringRepairFlowToFront(std::int64_t process, Workspace& workspace, Log& log) {
  if (workspace.bringToFront(process)) return true;
  log.line("ostrel: the repair flow is running but could not be brought to the front");
  return false;
}

void openRepairFlow(const RepairFlowServices& services, std::optional<Date>& startedAt) {
  auto& log = services.log;
  const auto executable = services.bundle.executablePath();
  if (executable.empty()) {
    return log.line("ostrel: cannot open the repair flow: the app executable path is unknown");
  }
  if (const auto running = runningRepairFlow(services.userDefaults, services.workspace)) {
    (void)bringRepairFlowToFront(*running, services.workspace, log);
    return;
  }
  const auto now = services.clock.now();
  if (startedAt && now >= *startedAt && now - *startedAt < repairFlowStartTimeout) return;
  const auto started = services.childProcesses.start({executable, {"repair"}});
  startedAt = started ? std::optional(now) : std::nullopt;
  if (!started) log.line("ostrel: could not open the repair flow: " + started.error().description);
}

}  // namespace ostrel
