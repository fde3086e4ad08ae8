#pragma once

#include <algorithm>
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

  int majorVersion = 15;
  bool canOpenUrls = true;
  std::vector<std::string> urls;
  bool canBringToFront = true;
  std::vector<std::int64_t> running;  ///< other processes of the program
  std::vector<std::int64_t> fronted;
};

}  // namespace ostrel
