#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
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

  /// How long captured children have to end by TERM when the host shuts down.
  static constexpr std::chrono::milliseconds graceBeforeKill{1000};

  /// Maps the paths of executables. SIGCHLD may be inherited as ignored; it gets its default action, since
  /// waitpid() would fail otherwise.
  explicit PosixChildProcesses(PathMap realPath, std::size_t outputLimit = defaultOutputLimit);

  /// Ends every run as `endAll` does, and waits for the last to return.
  ~PosixChildProcesses() override;

  [[nodiscard]] std::expected<ChildResult, PlatformError> run(const ChildCommand& command,
                                                              const ChildStopTokens& stopTokens = {},
                                                              const ChildOutput& received = {}) override;
  std::size_t reapKilled() override;

  /// Once it has ended, the next run or start reaps it.
  [[nodiscard]] std::expected<void, PlatformError> start(const ChildCommand& command) override;

  /// Starts no more children: every later run fails, and one that is starting its child ends it. Any thread.
  void refuseStarts();

  /// Starts no more children and ends those that run: captured ones by TERM and, after `graceBeforeKill`, by
  /// KILL. Waits for those that share the terminal, and leaves those that outlive the program. Their runs and
  /// every later one fail. Call it before the queues on which runs block are joined. Blocks; any thread.
  void endAll();

 private:
  struct Child;
  class RunningChildRegistration;

  [[nodiscard]] std::expected<ChildResult, PlatformError> runChild(const ChildCommand& command,
                                                                   const ChildStopTokens& stopTokens,
                                                                   const ChildOutput& received);
  std::optional<ChildResult> captureUntilExit(Child& child, Descriptor output, Descriptor error,
                                              const ChildStopTokens& stopTokens, const ChildOutput& received);
  std::size_t countSharingTerminal() const;
  void reapStarted();

  const PathMap realPath_;
  const std::size_t outputLimit_;
  std::mutex mutex_;  // guards what follows
  std::condition_variable runFinished_;
  std::set<Child*> children_;
  std::set<pid_t> started_;
  std::set<pid_t> killed_;  ///< not reaped yet; no run waits for them
  std::size_t runs_ = 0;
  bool ended_ = false;
};

}  // namespace ostrel
