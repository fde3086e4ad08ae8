#pragma once

#include "Platform/Bundle.hpp"
#include "Platform/ChildProcesses.hpp"
#include "Platform/Log.hpp"
#include "Platform/UserDefaults.hpp"
#include "Platform/Workspace.hpp"

namespace ostrel {

struct RepairFlowServices {
  const Bundle& bundle;
  const UserDefaults& userDefaults;
  Workspace& workspace;
  ChildProcesses& childProcesses;
  Log& log;
};

/// Brings the onboarding or repair window that is open to the front, or else starts the repair flow as a
/// process of its own. What fails is told in the log. Main thread.
void openRepairFlow(const RepairFlowServices& services);

}  // namespace ostrel
