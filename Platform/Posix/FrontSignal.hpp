#pragma once

#include <sys/types.h>

#include <csignal>
#include <functional>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"

namespace ostrel {

/// Handles SIGUSR1 while it lives: another process of the program sends it to bring this one to the front.
/// One instance at a time.
class FrontSignal {
 public:
  /// `asked` runs on the main thread. Throws std::system_error when the system has no descriptor left.
  FrontSignal(PosixMainQueue& queue, std::function<void()> asked);
  ~FrontSignal();
  FrontSignal(const FrontSignal&) = delete;
  FrontSignal& operator=(const FrontSignal&) = delete;

  /// False when there is no such process or it belongs to another user.
  [[nodiscard]] static bool send(pid_t process);

 private:
  Pipe pipe_;
  ScheduledWork watch_;
  struct sigaction before_ = {};
};

}  // namespace ostrel
