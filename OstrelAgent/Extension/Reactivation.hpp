#pragma once

#include <string>

#include "OstrelAgent/Extension/Records.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/Bundle.hpp"
#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Re-activates the system extension after an upgrade when the report asks for it: once per process and once
/// per version. Main thread.
class Reactivation {
 public:
  struct Services {
    BackgroundQueue& backgroundQueue;
    ChildProcesses& childProcesses;
    const Bundle& bundle;
  };

  Reactivation(Services services, Records records) : services_(services), records_(std::move(records)) {}

  /// Runs this program's "reactivate" in the background and records the version on success. An unknown
  /// version is empty.
  void driveReactivationOnce(const std::string& version);

 private:
  Services services_;
  Records records_;
  bool reactivateTriggered_ = false;
};

}  // namespace ostrel
