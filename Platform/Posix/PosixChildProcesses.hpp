#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <set>

#include "Platform/ChildProcesses.hpp"
#include "Platform/Posix/Descriptor.hpp"
#include "Platform/Posix/PathMap.hpp"

namespace ostrel {

/// Child processes by posix_spawn. A child that writes more than the limit of captured output is killed, and
/// reported so with the output up to the limit.
class PosixChildProcesses final : public ChildProcesses {
 public:
  static constexpr std::size_t defaultOutputLimit = std::size_t{64} << 20;

  /// Maps the paths of executables. Takes back an inherited disregard of SIGCHLD, under which no child could
  /// be waited for.
  explicit PosixChildProcesses(PathMap realPath, std::size_t outputLimit = defaultOutputLimit);

  /// Ends every run as `endAll` does, and waits for the last to return.
  ~PosixChildProcesses() override;

  std::expected<ChildResult, PlatformError> run(const ChildCommand& command,
                                                const ChildStopTokens& ending = {},
                                                const ChildOutput& received = {}) override;

  /// Once it has ended, the next run or start reaps it.
  std::expected<void, PlatformError> start(const ChildCommand& command) override;

  /// Kills the child of every run and starts no more, but waits for one that shares the terminal and leaves
  /// one that outlives the program. Those runs and every later one fail. Call it before the queues on which
  /// runs block are joined. Any thread.
  void endAll();

 private:
  struct Child;
  class RunningChildRegistration;

  std::expected<ChildResult, PlatformError> runChild(const ChildCommand& command,
                                                     const ChildStopTokens& ending,
                                                     const ChildOutput& received);
  ChildResult captureUntilExit(Child& child, Descriptor output, Descriptor error,
                               const ChildStopTokens& ending, const ChildOutput& received);

  std::expected<Pipe, PlatformError> takeStopPipe();
  void keepStopPipe(Pipe pipe);

  void reapStarted();

  const PathMap realPath_;
  const std::size_t outputLimit_;
  std::mutex mutex_;  // guards what follows
  std::condition_variable runFinished_;
  std::set<Child*> children_;
  std::set<pid_t> started_;
  std::size_t runs_ = 0;
  Pipe spareStop_;  ///< of an earlier run that nobody stopped, since most runs come one after the other
  bool ended_ = false;
};

}  // namespace ostrel
