#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Platform/Workspace.hpp"

namespace ostrel {

/// Finds other processes of this program in the process table. URLs of the Mac cannot be opened, and no
/// application of Linux has a bundle identifier.
class LinuxWorkspace final : public Workspace {
 public:
  explicit LinuxWorkspace(std::string executablePath) : executablePath_(std::move(executablePath)) {}

  std::vector<RunningApplication> runningApplications() const override { return {}; }
  bool hasApplication(const std::string& /*bundleIdentifier*/) const override { return false; }
  bool hasApplicationWithPrefix(const std::string& /*prefix*/) const override { return false; }
  int systemMajorVersion() const override { return 15; }  // of the simulated Mac
  [[nodiscard]] bool openUrl(const std::string& /*url*/) override { return false; }
  std::int64_t processIdentifier() const override;
  bool isRunning(std::int64_t processIdentifier) const override;
  [[nodiscard]] bool bringToFront(std::int64_t processIdentifier) override;

 private:
  const std::string executablePath_;
};

}  // namespace ostrel
