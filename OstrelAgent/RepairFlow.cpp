#include "OstrelAgent/RepairFlow.hpp"

namespace ostrel {

std::optional<std::int64_t> runningRepairFlow(const UserDefaults& userDefaults, const Workspace& workspace) {
  const auto process = userDefaults.get<std::int64_t>(onboardingFlowProcessIdentifierKey);
  if (!process || !workspace.isRunning(*process)) return std::nullopt;
  return process;
}

}  // namespace ostrel
