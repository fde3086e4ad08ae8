#pragma once

#include <functional>

#include "Platform/MainQueue.hpp"

namespace ostrel {

/// The system's return from sleep (the did-wake notification of NSWorkspace). Main thread.
class SystemWake {
 public:
  virtual ~SystemWake() = default;

  /// Calls `woke` after each sleep while the token lives; never inside the call.
  [[nodiscard]] virtual ScheduledWork observe(std::function<void()> woke) = 0;
};

}  // namespace ostrel
