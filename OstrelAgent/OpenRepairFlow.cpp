#include "OstrelAgent/OpenRepairFlow.hpp"

#include "OstrelAgent/RepairFlow.hpp"

namespace ostrel {

void openRepairFlow(const RepairFlowServices& services) {
  auto& log = services.log;
  const auto executable = services.bundle.executablePath();
  if (executable.empty()) {
    return log.line("ostrel: cannot open the repair flow: the app executable path is unknown");
  }
  if (const auto running = runningRepairFlow(services.userDefaults, services.workspace)) {
    (void)bringRepairFlowToFront(*running, services.workspace, log);
    return;
  }
  const auto started = services.childProcesses.start({executable, {"repair"}});
  if (!started) log.line("ostrel: could not open the repair flow: " + started.error().description);
}

}  // namespace ostrel
