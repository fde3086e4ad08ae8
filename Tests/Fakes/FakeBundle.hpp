#pragma once

#include <cerrno>
#include <map>

#include "Platform/Bundle.hpp"

namespace ostrel {

/// An installed bundle with the tables that the test puts into it.
class FakeBundle final : public Bundle {
 public:
  std::string path() const override { return "/Applications/OstrelAgent.app"; }
  std::string executablePath() const override { return executable; }

  std::expected<std::optional<std::string>, PlatformError> localizedTable(
      const std::string& name) const override {
    if (tableError) return std::unexpected(*tableError);
    const auto table = tables.find(name);
    return table == tables.end() ? std::nullopt : std::optional(table->second);
  }

  std::expected<std::string, PlatformError> resource(const std::string& name) const override {
    const auto resource = resources.find(name);
    if (resource != resources.end()) return resource->second;
    return std::unexpected(PlatformError{posixErrorDomain, ENOENT, "No such file or directory"});
  }

  std::string executable = path() + "/Contents/MacOS/OstrelAgent";
  std::map<std::string, std::string> tables;
  std::map<std::string, std::string> resources;
  std::optional<PlatformError> tableError;
};

}  // namespace ostrel
