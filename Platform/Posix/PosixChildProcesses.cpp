#include "Platform/Posix/PosixChildProcesses.hpp"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <span>
#include <utility>

#include "Platform/Posix/ChildEnd.hpp"
#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PosixError.hpp"
#include "Platform/Posix/SpawnChild.hpp"

namespace ostrel {

struct PosixChildProcesses::Child {
  pid_t process = 0;
  pid_t target = 0;  ///< target of signals: the process, or its group as a negative number
  bool outlivesProgram = false;
  Pipe stop = {};  ///< readable when the run must return at once; not open when the terminal is shared
  bool isEndedWithProgram = false;
  std::atomic<bool> isKilled = false;

  bool sharesTerminal() const { return target >= 0; }
  void terminate() const { ::kill(target, SIGTERM); }

  /// Only the user ends a child that shares the terminal; killed by us it might leave work half done.
  void endWithProgram() {
    if (sharesTerminal()) return;
    isEndedWithProgram = true;
    outlivesProgram ? returnAtOnce() : terminate();
  }

  void kill() {
    ::kill(target, SIGKILL);
    isKilled = true;
    returnAtOnce();
  }

  void returnAtOnce() {
    if (stop.writing) (void)writeAll(stop.writing.number(), "k");
  }
};

/// Registers a child for `endAll` until just before it is reaped.
class PosixChildProcesses::RunningChildRegistration {
 public:
  RunningChildRegistration(PosixChildProcesses& owner, Child& child) : owner_(owner), child_(child) {
    const std::lock_guard lock(owner_.mutex_);
    owner_.children_.insert(&child_);
    if (owner_.ended_) child_.endWithProgram();
  }
  RunningChildRegistration(const RunningChildRegistration&) = delete;
  RunningChildRegistration& operator=(const RunningChildRegistration&) = delete;
  ~RunningChildRegistration() {
    const std::lock_guard lock(owner_.mutex_);
    owner_.children_.erase(&child_);
    owner_.runFinished_.notify_all();
  }

 private:
  PosixChildProcesses& owner_;
  Child& child_;
};

namespace {

constexpr std::size_t errorLimit = 65536;
constexpr int noTimeout = -1;
constexpr int timeToDie = 100;  // milliseconds

/// The pipe of a stream; not open when the stream is not captured.
std::expected<Pipe, PlatformError> pipeFor(ChildStream stream) {
  return stream == ChildStream::captured ? makePipe() : Pipe();
}

/// One captured stream of a child, read up to a limit.
class CapturedStream {
 public:
  /// Reads nothing when the descriptor is not open.
  CapturedStream(int descriptor, std::size_t limit, std::string& into)
      : descriptor_(descriptor), limit_(limit), into_(into) {}

  /// Passes the read bytes to `received` instead of storing them.
  void passTo(const ChildOutput& receiver) { receiver_ = &receiver; }

  /// Entry for poll(); a stream that has ended is ignored.
  pollfd watched() const { return {descriptor_, POLLIN, 0}; }
  bool hasEnded() const { return descriptor_ < 0; }
  bool isWithinLimit() const { return isWithinLimit_; }

  /// Reads once; does not block when the descriptor is ready.
  void read(std::span<char> buffer) {
    const auto count = ::read(descriptor_, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) return end();
    if (receiver_ != nullptr) return (*receiver_)({buffer.data(), static_cast<std::size_t>(count)});
    const auto room = limit_ - into_.size();
    into_.append(buffer.data(), std::min(room, static_cast<std::size_t>(count)));
    if (static_cast<std::size_t>(count) > room) isWithinLimit_ = false;
  }

  /// Reads the available bytes only; other processes may keep the stream open.
  void readRest(std::span<char> buffer) {
    int waiting = 0;
    if (::ioctl(descriptor_, FIONREAD, &waiting) != 0) waiting = 0;
    for (auto left = static_cast<std::size_t>(waiting); left > 0 && !hasEnded();) {
      const auto part = buffer.first(std::min(left, buffer.size()));
      read(part);
      left -= part.size();
    }
    end();
  }

 private:
  void end() { descriptor_ = -1; }

  int descriptor_;
  std::size_t limit_;
  std::string& into_;
  const ChildOutput* receiver_ = nullptr;
  bool isWithinLimit_ = true;
};

/// Reads both streams to their ends, or until `stop` is readable or the output exceeds its limit. Standard
/// error is read until the child exits.
void readStreams(CapturedStream& output, CapturedStream& error, int stop, int childEnd) {
  std::array<char, 65536> buffer;
  while (output.isWithinLimit() && !(output.hasEnded() && error.hasEnded())) {
    std::array<pollfd, 4> watched = {pollfd{stop, POLLIN, 0}, output.watched(), error.watched(),
                                     pollfd{error.hasEnded() ? -1 : childEnd, POLLIN, 0}};
    if (::poll(watched.data(), watched.size(), -1) < 0) {
      if (errno == EINTR) continue;
      return;
    }
    if (watched[0].revents != 0) return;
    if (watched[1].revents != 0) output.read(buffer);
    if (watched[3].revents != 0) {
      error.readRest(buffer);
    } else if (watched[2].revents != 0) {
      error.read(buffer);
    }
  }
}

/// Waits for the child to exit without reaping it. A child that was reaped elsewhere counts as killed.
std::int32_t waitForStatus(pid_t process) {
  siginfo_t info{};
  while (::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT) != 0) {
    if (errno != EINTR) return SIGKILL;
  }
  return info.si_status;
}

bool hasEnded(pid_t process) {
  siginfo_t info{};
  return ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
         info.si_pid != 0;
}

/// True once the child is reaped, here or elsewhere.
bool reap(pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; }

/// Waits until the child has exited, `stop` is readable or that many milliseconds have passed. Without a
/// pidfd it polls a few times a second.
void waitForEither(pid_t process, int childEnd, int stop, int timeout) {
  std::array<pollfd, 2> watched = {pollfd{stop, POLLIN, 0}, pollfd{childEnd, POLLIN, 0}};
  const int interval = childEnd < 0 && timeout == noTimeout ? 200 : timeout;
  while (::poll(watched.data(), watched.size(), interval) <= 0) {
    if (timeout != noTimeout || hasEnded(process)) return;
  }
}

}  // namespace

PosixChildProcesses::PosixChildProcesses(PathMap realPath, std::size_t outputLimit)
    : realPath_(std::move(realPath)), outputLimit_(outputLimit) {
  struct sigaction current {};
  if (::sigaction(SIGCHLD, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) {
    (void)std::signal(SIGCHLD, SIG_DFL);
  }
}

PosixChildProcesses::~PosixChildProcesses() {
  endAll();
  std::unique_lock lock(mutex_);
  runFinished_.wait(lock, [this] { return runs_ == 0; });
  std::erase_if(killed_, reap);
}

void PosixChildProcesses::endAll() {
  std::unique_lock lock(mutex_);
  ended_ = true;
  for (auto* child : children_) child->endWithProgram();
  runFinished_.wait_for(lock, graceBeforeKill, [this] { return !isAnyRunning(false); });
  for (auto* child : children_) {
    if (!child->sharesTerminal()) child->kill();
  }
  runFinished_.wait(lock, [this] { return !isAnyRunning(true); });
}

bool PosixChildProcesses::isAnyRunning(bool sharesTerminal) const {
  return std::ranges::any_of(children_,
                             [&](const Child* child) { return child->sharesTerminal() == sharesTerminal; });
}

std::expected<ChildResult, PlatformError> PosixChildProcesses::run(const ChildCommand& command,
                                                                   const ChildStopTokens& stopTokens,
                                                                   const ChildOutput& received) {
  {
    const std::lock_guard lock(mutex_);
    if (ended_) return std::unexpected(posixError(ECANCELED));
    reapStarted();
    ++runs_;
  }
  auto result = runChild(command, stopTokens, received);
  const std::lock_guard lock(mutex_);
  --runs_;
  runFinished_.notify_all();
  return result;
}

std::size_t PosixChildProcesses::reapKilled() {
  const std::lock_guard lock(mutex_);
  std::erase_if(killed_, reap);
  return killed_.size();
}

std::expected<void, PlatformError> PosixChildProcesses::start(const ChildCommand& command) {
  const std::lock_guard lock(mutex_);
  if (ended_) return std::unexpected(posixError(ECANCELED));
  reapStarted();
  const auto process = spawnDetachedChild(realPath_(command.executable), command);
  if (!process) return std::unexpected(process.error());
  started_.insert(*process);
  return {};
}

/// Requires the mutex.
void PosixChildProcesses::reapStarted() { std::erase_if(started_, reap); }

std::expected<ChildResult, PlatformError> PosixChildProcesses::runChild(const ChildCommand& command,
                                                                        const ChildStopTokens& stopTokens,
                                                                        const ChildOutput& received) {
  if (stopTokens.kill.stop_requested()) return ChildResult{SIGKILL, {}};
  if (stopTokens.terminate.stop_requested()) return ChildResult{SIGTERM, {}};
  auto output = pipeFor(command.output);
  if (!output) return std::unexpected(std::move(output.error()));
  auto error = pipeFor(command.error);
  if (!error) return std::unexpected(std::move(error.error()));
  const bool leadsGroup = command.output != ChildStream::inherited;
  auto stop = leadsGroup ? makePipe() : Pipe();
  if (!stop) return std::unexpected(std::move(stop.error()));
  const CaptureDescriptors captured{output->writing.number(), error->writing.number()};
  const auto process = spawnChild(realPath_(command.executable), command, captured);
  if (!process) return std::unexpected(process.error());
  (void)output->writing.close();
  (void)error->writing.close();
  Child child{*process, leadsGroup ? -*process : *process, command.outlivesProgram, std::move(*stop)};
  auto result =
      captureUntilExit(child, std::move(output->reading), std::move(error->reading), stopTokens, received);
  // Unregistered before it is reaped, so that no signal goes to a recycled process id.
  const bool isReaped = reap(*process);
  const bool outlives = !isReaped && child.outlivesProgram;
  if (!isReaped && !outlives) {
    const std::lock_guard lock(mutex_);
    killed_.insert(*process);
  }
  if (child.isEndedWithProgram && (outlives || !child.outlivesProgram)) {
    return std::unexpected(posixError(ECANCELED));
  }
  return result;
}

ChildResult PosixChildProcesses::captureUntilExit(Child& child, Descriptor output, Descriptor error,
                                                  const ChildStopTokens& stopTokens,
                                                  const ChildOutput& received) {
  const RunningChildRegistration registration(*this, child);
  const auto childEnd = openPidfd(child.process);
  const std::stop_callback terminating(stopTokens.terminate, [&child] { child.terminate(); });
  const std::stop_callback killing(stopTokens.kill, [&child] { child.kill(); });
  ChildResult result;
  CapturedStream outputStream(output.number(), outputLimit_, result.output);
  if (received) outputStream.passTo(received);
  CapturedStream errorStream(error.number(), errorLimit, result.error);
  readStreams(outputStream, errorStream, child.stop.reading.number(), childEnd.number());
  if (!outputStream.isWithinLimit()) child.kill();
  (void)output.close();
  (void)error.close();
  if (!child.sharesTerminal()) {
    waitForEither(child.process, childEnd.number(), child.stop.reading.number(), noTimeout);
    // Most killed children exit at once; one that does not must not block a thread.
    if (child.isKilled) waitForEither(child.process, childEnd.number(), -1, timeToDie);
    if (!hasEnded(child.process)) return result.status = SIGKILL, result;
  }
  result.status = waitForStatus(child.process);
  if (!outputStream.isWithinLimit()) result.status = SIGKILL;
  return result;
}

}  // namespace ostrel
