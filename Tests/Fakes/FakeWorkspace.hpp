#pragma once

#include <algorithm>
#include <set>
#include <vector>

#include "Platform/Workspace.hpp"

namespace ostrel {

/// A session that opens the URLs it can.
class FakeWorkspace final : public Workspace {
 public:
  int systemMajorVersion() const override { return majorVersion; }

  bool openUrl(const std::string& url) override {
    urls.push_back(url);
    return canOpenUrls;
  }

  std::int64_t processIdentifier() const override { return 4242; }

  bool isRunning(std::int64_t processIdentifier) const override {
    return std::ranges::find(running, processIdentifier) != running.end();
  }

  bool bringToFront(std::int64_t processIdentifier) override {
    if (!canBringToFront || !isRunning(processIdentifier)) return false;
    fronted.push_back(processIdentifier);
    return true;
  }

  std::vector<RunningApplication> runningApplications() const override { return applications; }

  bool hasApplication(const std::string& identifier) const override { return installed.contains(identifier); }

  bool hasApplicationWithPrefix(const std::string& prefix) const override {
    const auto first = installed.lower_bound(prefix);
    return first != installed.end() && first->starts_with(prefix);
  }

  std::vector<RunningApplication> applications;
  std::set<std::string> installed;  ///< bundle identifiers
  int majorVersion = 15;
  bool canOpenUrls = true;
  std::vector<std::string> urls;
  bool canBringToFront = true;
  std::vector<std::int64_t> running;  ///< other processes of the program
  std::vector<std::int64_t> fronted;
};

}  // namespace ostrel
