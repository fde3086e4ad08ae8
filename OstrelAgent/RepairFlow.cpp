#include "OstrelAgent/RepairFlow.hpp"

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

}  // namespace ostrel
