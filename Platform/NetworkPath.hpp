#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Platform/MainQueue.hpp"

namespace ostrel {

/// The way into the network at one time.
struct NetworkPathUpdate {
  bool satisfied = false;               ///< data can be sent
  std::vector<std::string> interfaces;  ///< names of those that it can be sent by

  bool operator==(const NetworkPathUpdate&) const = default;
};

/// Follows the way into the network (NWPathMonitor). Main thread.
class NetworkPath {
 public:
  virtual ~NetworkPath() = default;

  /// Tells the path as it is, and then every update, while the token lives; never inside the call.
  [[nodiscard]] virtual ScheduledWork observe(std::function<void(const NetworkPathUpdate&)> updated) = 0;
};

}  // namespace ostrel
