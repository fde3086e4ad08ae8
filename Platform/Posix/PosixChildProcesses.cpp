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
  pid_t target = 0;  ///< what signals go to: the process, or its group as a negative number
  bool outlivesProgram = false;
  Pipe stop;  ///< readable when nothing more is to be waited for; not open where only the child's end is
  bool isEndedWithProgram = false;
  bool isDetached = false;              ///< to itself, and neither waited for nor reaped
  std::atomic<bool> isStopped = false;  ///< the pipe has been written to

  void terminate() const { ::kill(target, SIGTERM); }

  /// One that shares the terminal is the person's to end: in the middle it might leave things half done.
  void endWithProgram() {
    if (target >= 0) return;
    isEndedWithProgram = true;
    if (outlivesProgram) return stopWaiting();
    kill();
  }

  void kill() {
    ::kill(target, SIGKILL);
    stopWaiting();
  }

  void stopWaiting() {
    isStopped = true;
    if (stop.writing) (void)writeAll(stop.writing.number(), "k");
  }
};

/// A child's place among those that `endAll` ends, held until just before it is reaped.
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
  }

 private:
  PosixChildProcesses& owner_;
  Child& child_;
};

namespace {

constexpr std::size_t errorLimit = 65536;

/// The pipe of a stream; not open where it is not captured.
std::expected<Pipe, PlatformError> pipeFor(ChildStream stream) {
  return stream == ChildStream::captured ? makePipe() : Pipe();
}

/// One captured stream of a child: what is read of it, up to a limit.
class CapturedStream {
 public:
  /// Reads nothing where the descriptor is none.
  CapturedStream(int descriptor, std::size_t limit, std::string& into)
      : descriptor_(descriptor), limit_(limit), into_(into) {}

  /// Hands on what is read, in place of keeping it.
  void handTo(const ChildOutput& receiver) { receiver_ = &receiver; }

  /// What to wait for; a stream that has ended waits for nothing.
  pollfd watched() const { return {descriptor_, POLLIN, 0}; }
  bool hasEnded() const { return descriptor_ < 0; }
  bool isWithinLimit() const { return isWithinLimit_; }

  /// Reads once, without waiting when the descriptor is ready.
  void read(std::span<char> buffer) {
    const auto count = ::read(descriptor_, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) return end();
    if (receiver_ != nullptr) return (*receiver_)({buffer.data(), static_cast<std::size_t>(count)});
    const auto room = limit_ - into_.size();
    into_.append(buffer.data(), std::min(room, static_cast<std::size_t>(count)));
    if (static_cast<std::size_t>(count) > room) isWithinLimit_ = false;
  }

  /// Reads what has come by now, and then no more, though others may hold the stream open or write on.
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

/// Reads both streams to their ends, or until `stop` is readable or there is more output than its limit; the
/// error's end is that of the child.
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

/// A child that cannot be waited for, since somebody else has reaped it, did not end well.
siginfo_t waitFor(pid_t process, int options) {
  siginfo_t info{};
  while (::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | options) != 0) {
    if (errno == EINTR) continue;
    info.si_status = SIGKILL;
    break;
  }
  return info;
}

bool hasEnded(pid_t process) {
  siginfo_t info{};
  return ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
         info.si_pid != 0;
}

/// Waits until the child has ended or `stop` is readable. Where no descriptor tells the child's end it looks
/// for it, a few times a second.
void waitForEither(pid_t process, int childEnd, int stop) {
  std::array<pollfd, 2> watched = {pollfd{stop, POLLIN, 0}, pollfd{childEnd, POLLIN, 0}};
  const int patience = childEnd < 0 ? 200 : -1;
  while (::poll(watched.data(), watched.size(), patience) <= 0) {
    if (hasEnded(process)) return;
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
}

void PosixChildProcesses::endAll() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  for (auto* child : children_) child->endWithProgram();
}

std::expected<ChildResult, PlatformError> PosixChildProcesses::run(const ChildCommand& command,
                                                                   const ChildStopTokens& ending,
                                                                   const ChildOutput& received) {
  {
    const std::lock_guard lock(mutex_);
    if (ended_) return std::unexpected(posixError(ECANCELED));
    reapStarted();
    ++runs_;
  }
  auto result = runChild(command, ending, received);
  const std::lock_guard lock(mutex_);
  --runs_;
  runFinished_.notify_all();
  return result;
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

/// The mutex is held. A child that cannot be waited for has been reaped by somebody else.
void PosixChildProcesses::reapStarted() {
  std::erase_if(started_, [](pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; });
}

std::expected<ChildResult, PlatformError> PosixChildProcesses::runChild(const ChildCommand& command,
                                                                        const ChildStopTokens& ending,
                                                                        const ChildOutput& received) {
  if (ending.kill.stop_requested()) return ChildResult{SIGKILL, {}};
  if (ending.terminate.stop_requested()) return ChildResult{SIGTERM, {}};
  auto output = pipeFor(command.output);
  if (!output) return std::unexpected(std::move(output.error()));
  auto error = pipeFor(command.error);
  if (!error) return std::unexpected(std::move(error.error()));
  const bool isWatched = output->reading || error->reading || command.outlivesProgram;
  auto stop = isWatched ? takeStopPipe() : Pipe();
  if (!stop) return std::unexpected(std::move(stop.error()));
  const CaptureDescriptors captured{output->writing.number(), error->writing.number()};
  const auto process = spawnChild(realPath_(command.executable), command, captured);
  if (!process) return std::unexpected(process.error());
  (void)output->writing.close();
  (void)error->writing.close();
  const bool leadsGroup = command.output != ChildStream::inherited;
  Child child{*process, leadsGroup ? -*process : *process, command.outlivesProgram, std::move(*stop)};
  auto result =
      captureUntilExit(child, std::move(output->reading), std::move(error->reading), ending, received);
  if (child.isDetached) return std::unexpected(posixError(ECANCELED));
  (void)waitFor(*process, 0);
  if (!child.isStopped) keepStopPipe(std::move(child.stop));
  if (child.isEndedWithProgram && !child.outlivesProgram) return std::unexpected(posixError(ECANCELED));
  return result;
}

std::expected<Pipe, PlatformError> PosixChildProcesses::takeStopPipe() {
  {
    const std::lock_guard lock(mutex_);
    if (spareStop_.reading) return std::exchange(spareStop_, {});
  }
  return makePipe();
}

void PosixChildProcesses::keepStopPipe(Pipe pipe) {
  const std::lock_guard lock(mutex_);
  if (!spareStop_.reading) spareStop_ = std::move(pipe);
}

ChildResult PosixChildProcesses::captureUntilExit(Child& child, Descriptor output, Descriptor error,
                                                  const ChildStopTokens& ending,
                                                  const ChildOutput& received) {
  const RunningChildRegistration attendance(*this, child);
  const auto childEnd = error || child.outlivesProgram ? openPidfd(child.process) : Descriptor();
  const std::stop_callback terminating(ending.terminate, [&child] { child.terminate(); });
  const std::stop_callback killing(ending.kill, [&child] { child.kill(); });
  ChildResult result;
  CapturedStream outputStream(output.number(), outputLimit_, result.output);
  if (received) outputStream.handTo(received);
  CapturedStream errorStream(error.number(), errorLimit, result.error);
  readStreams(outputStream, errorStream, child.stop.reading.number(), childEnd.number());
  if (!outputStream.isWithinLimit()) child.kill();
  (void)output.close();
  (void)error.close();
  if (child.outlivesProgram) {
    waitForEither(child.process, childEnd.number(), child.stop.reading.number());
    const std::lock_guard lock(mutex_);
    child.isDetached = child.isEndedWithProgram && !hasEnded(child.process);
    if (child.isDetached) return result;
  }
  // The child stays a zombie until all that may signal it is gone, so that no signal meets a recycled number.
  const auto end = waitFor(child.process, WNOWAIT);
  result.status = outputStream.isWithinLimit() ? end.si_status : SIGKILL;
  return result;
}

}  // namespace ostrel
