#pragma once

#include <expected>
#include <functional>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/ApplicationsFile.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"

namespace ostrel::simulated {

/// Changes what is installed and what runs on the simulated Mac. Changes by several processes are all kept.
class Applications {
 public:
  using Done = std::expected<void, std::string>;

  /// The files take real paths.
  Applications(Files& files, const HostRoot& root);

  [[nodiscard]] Done install(const std::string& identifier) const;
  /// Removes the application and stops it.
  [[nodiscard]] Done remove(const std::string& identifier) const;
  /// Starts one instance; the application need not be installed.
  [[nodiscard]] Done start(const std::string& identifier, Date launched) const;
  /// Stops each instance.
  [[nodiscard]] Done stop(const std::string& identifier) const;

  [[nodiscard]] Done startProcess(const std::string& name) const;
  /// Stops each process of the name.
  [[nodiscard]] Done stopProcess(const std::string& name) const;

  /// Installs and runs exactly this.
  [[nodiscard]] Done replace(ApplicationsState state) const;

 private:
  [[nodiscard]] Done change(const std::function<void(ApplicationsState&)>& change) const;

  Files& files_;
  const std::string path_;
  const std::string lockPath_;
};

}  // namespace ostrel::simulated
