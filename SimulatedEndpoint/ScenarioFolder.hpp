#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Files.hpp"
#include "SimulatedEndpoint/Scenario.hpp"

namespace ostrel::simulated {

/// The scenario files NAME.json of a folder.
class ScenarioFolder {
 public:
  ScenarioFolder(const Files& files, std::string path) : files_(files), path_(std::move(path)) {}

  /// Sorted; empty when the folder cannot be read.
  std::vector<std::string> names() const;

  /// The name that a misspelt one is nearest to, nothing when none is near.
  std::optional<std::string> closestName(std::string_view misspelt) const;

  /// The scenario of a name; one that is "based_on" another is that one with its own values laid over it.
  [[nodiscard]] std::expected<Scenario, std::string> load(const std::string& name) const;

 private:
  [[nodiscard]] std::expected<Json, std::string> document(const std::string& name) const;

  const Files& files_;
  std::string path_;
};

}  // namespace ostrel::simulated
