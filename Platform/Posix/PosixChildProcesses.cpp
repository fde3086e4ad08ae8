#include "Platform/Posix/PosixChildProcesses.hpp"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PosixError.hpp"
#include "Platform/Posix/SpawnChild.hpp"

namespace ostrel {

struct PosixChildProcesses::Child {
  pid_t process = 0;
  pid_t target = 0;  ///< what signals go to: the process, or its group as a negative number
  Pipe stop;         ///< readable when the output is no longer to be read; not open when none is

  void terminate() const { ::kill(target, SIGTERM); }

  void kill() const {
    ::kill(target, SIGKILL);
    if (stop.writing) (void)writeAll(stop.writing.number(), "k");
  }
};

/// A child's place among those that `endAll` ends, held until just before it is reaped.
class PosixChildProcesses::Attendance {
 public:
  Attendance(PosixChildProcesses& owner, const Child& child) : owner_(owner), child_(child) {
    const std::lock_guard lock(owner_.mutex_);
    owner_.children_.insert(&child_);
    if (owner_.ended_) child_.kill();
  }
  Attendance(const Attendance&) = delete;
  Attendance& operator=(const Attendance&) = delete;
  ~Attendance() {
    const std::lock_guard lock(owner_.mutex_);
    owner_.children_.erase(&child_);
  }

 private:
  PosixChildProcesses& owner_;
  const Child& child_;
};

namespace {

/// Reads to the end, or until `stop` is readable; false when there was more than the limit.
bool readOutput(int output, int stop, std::size_t limit, std::string& into) {
  std::array<char, 65536> buffer;
  std::array<pollfd, 2> watched = {{{output, POLLIN, 0}, {stop, POLLIN, 0}}};
  while (true) {
    if (::poll(watched.data(), watched.size(), -1) < 0) {
      if (errno == EINTR) continue;
      return true;
    }
    if (watched[1].revents != 0) return true;
    const auto count = ::read(output, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return true;
    const auto room = limit - into.size();
    into.append(buffer.data(), std::min(room, static_cast<std::size_t>(count)));
    if (static_cast<std::size_t>(count) > room) return false;
  }
}

siginfo_t waitFor(pid_t process, int options) {
  siginfo_t info{};
  while (::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | options) != 0 && errno == EINTR) {
  }
  return info;
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
  left_.wait(lock, [this] { return runs_ == 0; });
}

void PosixChildProcesses::endAll() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  for (const auto* child : children_) child->kill();
}

std::expected<ChildResult, PlatformError> PosixChildProcesses::run(const ChildCommand& command,
                                                                   const ChildEnding& ending) {
  {
    const std::lock_guard lock(mutex_);
    if (ended_) return ChildResult{SIGKILL, {}};
    ++runs_;
  }
  auto result = runChild(command, ending);
  const std::lock_guard lock(mutex_);
  --runs_;
  left_.notify_all();
  return result;
}

std::expected<ChildResult, PlatformError> PosixChildProcesses::runChild(const ChildCommand& command,
                                                                        const ChildEnding& ending) {
  if (ending.kill.stop_requested()) return ChildResult{SIGKILL, {}};
  if (ending.terminate.stop_requested()) return ChildResult{SIGTERM, {}};
  Pipe output;
  Pipe stop;
  if (command.output == ChildStream::captured) {
    auto first = makePipe();
    if (!first) return std::unexpected(std::move(first.error()));
    auto second = makePipe();
    if (!second) return std::unexpected(std::move(second.error()));
    output = std::move(*first);
    stop = std::move(*second);
  }
  const auto process = spawnChild(realPath_(command.executable), command, output.writing.number());
  if (!process) return std::unexpected(process.error());
  (void)output.writing.close();
  const bool leadsGroup = command.output != ChildStream::inherited;
  const Child child{*process, leadsGroup ? -*process : *process, std::move(stop)};
  auto result = attend(child, std::move(output.reading), ending);
  (void)waitFor(*process, 0);
  return result;
}

ChildResult PosixChildProcesses::attend(const Child& child, Descriptor output, const ChildEnding& ending) {
  const Attendance attendance(*this, child);
  const std::stop_callback terminating(ending.terminate, [&child] { child.terminate(); });
  const std::stop_callback killing(ending.kill, [&child] { child.kill(); });
  ChildResult result;
  const bool isWithinLimit =
      !output || readOutput(output.number(), child.stop.reading.number(), outputLimit_, result.output);
  if (!isWithinLimit) child.kill();
  (void)output.close();
  // The child stays a zombie until all that may signal it is gone, so that no signal meets a recycled number.
  const auto end = waitFor(child.process, WNOWAIT);
  result.status = isWithinLimit ? end.si_status : SIGKILL;
  return result;
}

}  // namespace ostrel
