#pragma once

#include <map>

#include "Platform/Bundle.hpp"

namespace ostrel {

/// An installed bundle with the tables that the test puts into it.
class FakeBundle final : public Bundle {
 public:
  std::string path() const override { return "/Applications/OstrelAgent.app"; }
  std::string executablePath() const override { return path() + "/Contents/MacOS/OstrelAgent"; }

  std::expected<std::optional<std::string>, PlatformError> localizedTable(
      const std::string& name) const override {
    if (tableError) return std::unexpected(*tableError);
    const auto table = tables.find(name);
    return table == tables.end() ? std::nullopt : std::optional(table->second);
  }

  std::map<std::string, std::string> tables;
  std::optional<PlatformError> tableError;
};

}  // namespace ostrel
