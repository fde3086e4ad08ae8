#pragma once

#include <array>
#include <csignal>
#include <optional>

#include "Platform/Posix/Descriptor.hpp"

namespace ostrel {

/// Handles SIGINT, SIGTERM and SIGHUP while it lives, so that the main loop can exit in order. A signal that
/// was ignored at program start stays ignored. One instance at a time.
class TerminationSignals {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  TerminationSignals();
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  /// Readable once a signal has arrived.
  int descriptor() const { return pipe_.reading.number(); }

  /// The number of the latest signal, or no value.
  static std::optional<int> received();

 private:
  static constexpr std::array handled = {SIGINT, SIGTERM, SIGHUP};

  Pipe pipe_;
  std::array<struct sigaction, handled.size()> before_{};
};

}  // namespace ostrel
