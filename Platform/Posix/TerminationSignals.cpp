#include "Platform/Posix/TerminationSignals.hpp"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace ostrel {

namespace {

constexpr std::array handledSignals = {SIGINT, SIGTERM, SIGHUP};

// A signal handler reaches nothing but these.
std::atomic<int> wakeNumber = -1;
std::atomic<int> latestSignal = 0;

void handleSignal(int signal) {
  const int error = errno;
  latestSignal = signal;
  const char wake = 0;
  if (::write(wakeNumber, &wake, 1) < 0) errno = error;
}

void handleEach(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int signal : handledSignals) ::sigaction(signal, &action, nullptr);
}

}  // namespace

TerminationSignals::TerminationSignals() {
  auto pipe = makePipe();
  if (!pipe) throw std::system_error(pipe.error().code, std::generic_category(), "signal pipe");
  pipe_ = std::move(*pipe);
  wakeNumber = pipe_.writing.number();
  latestSignal = 0;
  handleEach(handleSignal);
}

TerminationSignals::~TerminationSignals() { handleEach(SIG_DFL); }

std::optional<int> TerminationSignals::received() {
  const int signal = latestSignal;
  return signal == 0 ? std::nullopt : std::optional(signal);
}

}  // namespace ostrel
