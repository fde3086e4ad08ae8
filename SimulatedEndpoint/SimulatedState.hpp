#pragma once

#include <expected>
#include <functional>
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
  /// The files take real paths.
  SimulatedState(Files& files, HostRoot root) : files_(files), root_(std::move(root)) {}

  const HostRoot& root() const { return root_; }
  /// The folder that stands for "/" of the simulated Mac.
  const std::string& hostRoot() const { return root_.path(); }

  /// The current scenario, the initial one when none was chosen, or a sentence on what is wrong with its
  /// file.
  [[nodiscard]] std::expected<Scenario, std::string> scenario() const;

  /// The current scenario with the report that the endpoint prints now: where the agent has changed the
  /// system since the scenario was chosen, the report shows what became of it.
  [[nodiscard]] std::expected<Scenario, std::string> observed() const;

  /// Makes the scenario the current one and writes the preferences that the path touches; the empty path
  /// touches all.
  [[nodiscard]] std::expected<void, std::string> choose(const Scenario& scenario,
                                                        std::string_view changedPath) const;

  using Change = std::function<std::expected<Scenario, std::string>(const Scenario&)>;

  /// Puts what the change makes of the current scenario in its place; no other process changes it meanwhile.
  [[nodiscard]] std::expected<void, std::string> change(const Change& change,
                                                        std::string_view changedPath) const;

  /// Changes the current report alone.
  [[nodiscard]] std::expected<void, std::string> changeReport(const std::function<Json(Json)>& change) const;

  /// Writes the file by which the system starts the daemon.
  [[nodiscard]] std::expected<void, std::string> writeLaunchFile() const;

  /// Makes the scenario of this Mac without endpoint the current one and removes the endpoint's own files.
  /// Gives the Mac paths of those that were there.
  [[nodiscard]] std::expected<std::vector<std::string>, std::string> uninstall() const;

  /// Whether device management manages this Mac; a missing file says no.
  [[nodiscard]] std::expected<bool, std::string> isDeviceManaged() const;

  /// Links the stand-ins of a folder in the places of the system's tools; a file that is no link stays as it
  /// is.
  [[nodiscard]] std::expected<void, std::string> linkTools(const std::string& folder) const;

 private:
  [[nodiscard]] std::expected<Scenario, std::string> changed(const Change& change) const;
  Json preference(const char* file, const Json& otherwise) const;
  [[nodiscard]] std::expected<void, std::string> write(const Scenario& scenario,
                                                       std::string_view changedPath) const;

  Files& files_;
  HostRoot root_;
};

}  // namespace ostrel::simulated
