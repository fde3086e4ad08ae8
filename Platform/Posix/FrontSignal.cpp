#include "Platform/Posix/FrontSignal.hpp"

#include <unistd.h>

#include <array>
#include <atomic>
#include <utility>

#include "Platform/Posix/SignalPipe.hpp"

namespace ostrel {

namespace {

// Static, because a signal handler has no other access.
std::atomic<int> wakeNumber = -1;

void handleSignal(int /*signal*/) { wakeFromSignal(wakeNumber); }

/// Signals that arrive together count as one.
void takeAll(int descriptor) {
  std::array<char, 64> wakes;
  (void)!::read(descriptor, wakes.data(), wakes.size());
}

}  // namespace

FrontSignal::FrontSignal(PosixMainQueue& queue, std::function<void()> asked) : pipe_(makeSignalPipe()) {
  watch_ = queue.watch(pipe_.reading.number(), [number = pipe_.reading.number(), asked = std::move(asked)] {
    takeAll(number);
    asked();
  });
  wakeNumber = pipe_.writing.number();
  struct sigaction action = {};
  action.sa_handler = handleSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  ::sigaction(SIGUSR1, &action, &before_);
}

FrontSignal::~FrontSignal() { ::sigaction(SIGUSR1, &before_, nullptr); }

bool FrontSignal::send(pid_t process) { return ::kill(process, SIGUSR1) == 0; }

}  // namespace ostrel
