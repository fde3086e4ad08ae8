#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <deque>
#include <functional>
#include <utility>

#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Child processes by script: each run takes the next result of it, or the default answer; a run with
/// neither fails the test. One that is ended before its start takes nothing, nor does one after the host's
/// end.
class FakeChildProcesses final : public ChildProcesses {
 public:
  using Result = std::expected<ChildResult, PlatformError>;

  Result run(const ChildCommand& command, const ChildStopTokens& ending = {},
             const ChildOutput& received = {}) override {
    if (hostHasEnded) return std::unexpected(endOfHost());
    commands.push_back(command);
    if (ending.kill.stop_requested()) return ChildResult{SIGKILL, ""};
    if (ending.terminate.stop_requested()) return ChildResult{SIGTERM, ""};
    if (whileRunning) whileRunning(command, ending, received);
    auto result = next(command);
    if (result && command.error != ChildStream::captured) result->error.clear();
    if (result && received) received(std::exchange(result->output, {}));
    return result;
  }

  std::size_t reapKilled() override { return unreapable; }

  std::expected<void, PlatformError> start(const ChildCommand& command) override {
    if (hostHasEnded) return std::unexpected(endOfHost());
    started.push_back(command);
    return startResult;
  }

  static PlatformError endOfHost() { return {posixErrorDomain, ECANCELED, "Operation canceled"}; }

  bool hostHasEnded = false;
  std::size_t unreapable = 0;  ///< killed children that do not end
  std::deque<Result> script;   ///< what the next runs give
  std::function<Result(const ChildCommand&)>
      answer;  ///< what every run gives for which the script has nothing
  /// What happens while a child runs that was started.
  std::function<void(const ChildCommand&, const ChildStopTokens&, const ChildOutput&)> whileRunning;
  std::vector<ChildCommand> commands;  ///< every command that was run, in order
  std::vector<ChildCommand> started;   ///< those left to themselves
  std::expected<void, PlatformError> startResult;

 private:
  Result next(const ChildCommand& command) {
    if (script.empty() && answer) return answer(command);
    if (script.empty()) {
      ADD_FAILURE() << "no script for a run of " << command.executable;
      return std::unexpected(PlatformError{"FakeErrorDomain", 1, "not scripted"});
    }
    auto result = std::move(script.front());
    script.pop_front();
    return result;
  }
};

}  // namespace ostrel
