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

/// Child processes by posix_spawn. A child that exceeds the limit of captured output is killed and reported
/// so, with the output up to the limit.
class PosixChildProcesses final : public ChildProcesses {
 public:
  static constexpr std::size_t defaultOutputLimit = std::size_t{64} << 20;

  /// Time that captured children have to exit after TERM when the host shuts down.
  static constexpr std::chrono::milliseconds graceBeforeKill{1000};

  /// Maps the paths of executables. Restores SIGCHLD's default action, since it may be inherited as ignored
  /// and waitpid() would then fail.
  explicit PosixChildProcesses(PathMap realPath, std::size_t outputLimit = defaultOutputLimit);

  /// Ends every run as `endAll` does, and waits for the last to return.
  ~PosixChildProcesses() override;

  [[nodiscard]] std::expected<ChildResult, PlatformError> run(const ChildCommand& command,
                                                              const ChildStopTokens& stopTokens = {},
                                                              const ChildOutput& received = {}) override;
  std::size_t reapKilled() override;

  /// The next run or start after its exit reaps it.
  [[nodiscard]] std::expected<void, PlatformError> start(const ChildCommand& command) override;

  /// Ends running children and starts no more: captured ones get TERM and, after `graceBeforeKill`, KILL;
  /// those on the terminal are waited for; those that outlive the program are left alone. All runs then fail.
  /// Call it before joining queues on which runs block. Blocks; any thread.
  void endAll();

 private:
  struct Child;
  class RunningChildRegistration;

  [[nodiscard]] std::expected<ChildResult, PlatformError> runChild(const ChildCommand& command,
                                                                   const ChildStopTokens& stopTokens,
                                                                   const ChildOutput& received);
  ChildResult captureUntilExit(Child& child, Descriptor output, Descriptor error,
                               const ChildStopTokens& stopTokens, const ChildOutput& received);
  bool isAnyRunning(bool sharesTerminal) const;
  void reapStarted();

  const PathMap realPath_;
  const std::size_t outputLimit_;
  std::mutex mutex_;  // guards the members below
  std::condition_variable runFinished_;
  std::set<Child*> children_;
  std::set<pid_t> started_;
  std::set<pid_t> killed_;  ///< killed children that are not reaped; no run waits for them
  std::size_t runs_ = 0;
  bool ended_ = false;
};

}  // namespace ostrel
