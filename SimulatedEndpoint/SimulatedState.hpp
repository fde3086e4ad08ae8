#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "SimulatedEndpoint/Scenario.hpp"

namespace ostrel::simulated {

/// The scenario's files under the host root.
class SimulatedState {
 public:
  /// The files are told real paths.
  SimulatedState(Files& files, HostRoot root) : files_(files), root_(std::move(root)) {}

  /// The folder that stands for "/" of the simulated Mac.
  const std::string& hostRoot() const { return root_.path(); }

  /// The current scenario, the initial one when none was chosen, or a sentence on what is wrong with its
  /// file.
  [[nodiscard]] std::expected<Scenario, std::string> scenario() const;

  /// Makes the scenario the current one and writes the preferences that the path touches; the empty path
  /// touches all.
  [[nodiscard]] std::expected<void, std::string> choose(const Scenario& scenario,
                                                        std::string_view changedPath) const;

  /// Makes the scenario of this Mac without endpoint the current one and removes the endpoint's own files.
  /// Gives the Mac paths of those that were there.
  [[nodiscard]] std::expected<std::vector<std::string>, std::string> uninstall(const Scenario& current) const;

  /// Whether device management manages this Mac; a missing file says no.
  [[nodiscard]] std::expected<bool, std::string> isDeviceManaged() const;

  /// Links the stand-in at /usr/bin/profiles; a file that is no link stays as it is.
  [[nodiscard]] std::expected<void, std::string> linkProfilesTool(const std::string& tool) const;

 private:
  Files& files_;
  HostRoot root_;
};

}  // namespace ostrel::simulated
