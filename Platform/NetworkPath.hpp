#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Platform/MainQueue.hpp"

namespace ostrel {

/// The state of the network connection at one time.
struct NetworkPathUpdate {
  bool satisfied = false;               ///< data can be sent
  std::vector<std::string> interfaces;  ///< names of the usable interfaces

  bool operator==(const NetworkPathUpdate&) const = default;
};

/// Monitors the network connection (NWPathMonitor). Main thread.
class NetworkPath {
 public:
  virtual ~NetworkPath() = default;

  /// Reports the current path and then every update, while the token lives; never inside the call.
  [[nodiscard]] virtual ScheduledWork observe(std::function<void(const NetworkPathUpdate&)> updated) = 0;
};

}  // namespace ostrel
