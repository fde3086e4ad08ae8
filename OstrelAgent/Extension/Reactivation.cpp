#include "OstrelAgent/Extension/Reactivation.hpp"

namespace ostrel {

void Reactivation::driveReactivationOnce(const std::string& version) {
  if (reactivateTriggered_) return;
  if (!version.empty() && version == records_.reactivatedVersion()) return;
  const auto executable = services_.bundle.executablePath();
  if (executable.empty()) return;
  reactivateTriggered_ = true;
  services_.backgroundQueue.run(QualityOfService::utility, [&children = services_.childProcesses, executable,
                                                            records = records_, version] {
    // Killed half-way, it would leave the Mac without its extension until the next login.
    const auto ended = children.run({.executable = executable,
                                     .arguments = {"reactivate"},
                                     .output = ChildStream::discarded,
                                     .error = ChildStream::discarded,
                                     .outlivesProgram = true});
    if (ended && ended->status == 0 && !version.empty()) records.recordReactivated(version);
  });
}

}  // namespace ostrel
