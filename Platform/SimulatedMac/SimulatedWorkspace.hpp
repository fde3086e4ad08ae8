#pragma once

#include <string>
#include <vector>

#include "Platform/SimulatedMac/SimulatedApplications.hpp"
#include "Platform/Workspace.hpp"

namespace ostrel {

/// The user's session on the machine, with the applications of the simulated Mac.
class SimulatedWorkspace final : public Workspace {
 public:
  SimulatedWorkspace(Workspace& machines, const SimulatedApplications& applications)
      : machines_(machines), applications_(applications) {}

  std::vector<RunningApplication> runningApplications() const override;
  bool hasApplication(const std::string& bundleIdentifier) const override;
  bool hasApplicationWithPrefix(const std::string& prefix) const override;

  int systemMajorVersion() const override { return machines_.systemMajorVersion(); }
  [[nodiscard]] bool openUrl(const std::string& url) override { return machines_.openUrl(url); }
  std::int64_t processIdentifier() const override { return machines_.processIdentifier(); }
  bool isRunning(std::int64_t processIdentifier) const override {
    return machines_.isRunning(processIdentifier);
  }
  [[nodiscard]] bool bringToFront(std::int64_t processIdentifier) override {
    return machines_.bringToFront(processIdentifier);
  }

 private:
  Workspace& machines_;
  const SimulatedApplications& applications_;
};

}  // namespace ostrel
