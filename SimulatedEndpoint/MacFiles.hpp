#pragma once

#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Date.hpp"
#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"

namespace ostrel::simulated {

/// Whether a tool can have the name: a file name without folder.
bool isToolName(std::string_view name);

/// Files that other software keeps on the simulated Mac, and the trust bundle of the endpoint.
class MacFiles {
 public:
  using Done = std::expected<void, std::string>;

  /// The files take real paths.
  MacFiles(Files& files, const HostRoot& root) : files_(files), root_(root) {}

  /// An executable command-line tool of that name in /opt/homebrew/bin.
  [[nodiscard]] Done installTool(const std::string& name) const;
  [[nodiscard]] Done removeTool(const std::string& name) const;
  /// Installs these tools and removes the others that were installed here.
  [[nodiscard]] Done replaceTools(const std::vector<std::string>& names) const;

  /// Sets the folders that Docker Desktop shares with its containers; its other settings stay.
  [[nodiscard]] Done shareWithDocker(std::span<const std::string> paths) const;
  /// Removes the settings of Docker Desktop.
  [[nodiscard]] Done removeDockerSettings() const;

  enum class Certificates { one, two };
  /// Writes the trust bundle with the device certificate, and perhaps a second one behind it.
  [[nodiscard]] Done publishBundle(Certificates certificates) const;
  /// Sets the time at which the trust bundle was written.
  [[nodiscard]] Done dateBundle(Date published) const;
  [[nodiscard]] Done removeBundle() const;

 private:
  std::string dockerSettings() const;
  [[nodiscard]] Done write(const std::string& path, const std::string& bytes) const;
  [[nodiscard]] Done remove(const std::string& path) const;

  Files& files_;
  const HostRoot& root_;
};

}  // namespace ostrel::simulated
