#pragma once

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

  int majorVersion = 15;
  bool canOpenUrls = true;
  std::vector<std::string> urls;
};

}  // namespace ostrel
