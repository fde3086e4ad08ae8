#include "Platform/Posix/TerminationSignals.hpp"

#include <atomic>

#include "Platform/Posix/SignalPipe.hpp"

namespace ostrel {

namespace {

// Static, because a signal handler has no other access.
std::atomic<int> wakeNumber = -1;
std::atomic<int> latestSignal = 0;

void handleSignal(int signal) {
  latestSignal = signal;
  wakeFromSignal(wakeNumber);
}

}  // namespace

TerminationSignals::TerminationSignals() : pipe_(makeSignalPipe()) {
  wakeNumber = pipe_.writing.number();
  latestSignal = 0;
  struct sigaction action = {};
  action.sa_handler = handleSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < handled.size(); ++i) {
    ::sigaction(handled[i], nullptr, &before_[i]);
    if (before_[i].sa_handler != SIG_IGN) ::sigaction(handled[i], &action, nullptr);
  }
}

TerminationSignals::~TerminationSignals() {
  for (std::size_t i = 0; i < handled.size(); ++i) ::sigaction(handled[i], &before_[i], nullptr);
}

std::optional<int> TerminationSignals::received() {
  const int signal = latestSignal;
  return signal == 0 ? std::nullopt : std::optional(signal);
}

}  // namespace ostrel
