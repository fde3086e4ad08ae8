#pragma once

#include <optional>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

/// Takes SIGINT, SIGTERM and SIGHUP while it lives, so that a main loop can end in order. One at a time.
class TerminationSignals {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  TerminationSignals();
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  /// Readable once a signal has come.
  int descriptor() const { return pipe_.reading.number(); }

  /// The number of the latest signal, or nothing.
  static std::optional<int> received();

 private:
  Pipe pipe_;
};

}  // namespace ostrel
