#pragma once

#include <string>
#include <utility>

#include "Platform/Workspace.hpp"

namespace ostrel {

/// Other processes of this program by the process table. Nothing here opens the Mac's URLs.
class LinuxWorkspace final : public Workspace {
 public:
  explicit LinuxWorkspace(std::string executablePath) : executablePath_(std::move(executablePath)) {}

  int systemMajorVersion() const override { return 15; }  // of the Mac that is simulated
  [[nodiscard]] bool openUrl(const std::string& /*url*/) override { return false; }
  std::int64_t processIdentifier() const override;
  bool isRunning(std::int64_t processIdentifier) const override;
  [[nodiscard]] bool bringToFront(std::int64_t processIdentifier) override;

 private:
  const std::string executablePath_;
};

}  // namespace ostrel
