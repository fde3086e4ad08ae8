#pragma once

#include <sys/types.h>

#include <csignal>
#include <functional>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"

namespace ostrel {

/// Takes SIGUSR1 while it lives: by it another process of the program asks this one to come to the front.
/// One at a time.
class FrontSignal {
 public:
  /// `asked` runs on the main thread. Throws std::system_error when the system has no descriptor left.
  FrontSignal(PosixMainQueue& queue, std::function<void()> asked);
  ~FrontSignal();
  FrontSignal(const FrontSignal&) = delete;
  FrontSignal& operator=(const FrontSignal&) = delete;

  /// False when there is no such process, or when it is another user's.
  [[nodiscard]] static bool send(pid_t process);

 private:
  Pipe pipe_;
  ScheduledWork watch_;
  struct sigaction before_ = {};
};

}  // namespace ostrel
