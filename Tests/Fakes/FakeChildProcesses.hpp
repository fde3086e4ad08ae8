#pragma once

#include <deque>
#include <functional>
#include <mutex>

#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Child processes by script: each run takes the next result of it, or the standing answer; a run with
/// neither fails the test. One that is ended before its start takes nothing.
class FakeChildProcesses final : public ChildProcesses {
 public:
  using Result = std::expected<ChildResult, PlatformError>;
  using Child = std::function<Result(const ChildCommand&, const ChildEnding&)>;

  std::expected<ChildResult, PlatformError> run(const ChildCommand& command,
                                                const ChildEnding& ending = {}) override;

  void script(Result result);

  /// What every run does for which the script has no result.
  void answerAlways(Child child);

  /// Every command that was run, in order.
  std::vector<ChildCommand> commands() const;

 private:
  mutable std::mutex mutex_;
  std::deque<Result> script_;
  Child always_;
  std::vector<ChildCommand> commands_;
};

}  // namespace ostrel
