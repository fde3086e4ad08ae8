#pragma once

#include <deque>
#include <functional>
#include <mutex>

#include "Platform/ChildProcesses.hpp"

namespace ostrel {

/// Child processes by script: each run takes the next line of it, or the standing answer; a run with neither
/// fails the test.
class FakeChildProcesses final : public ChildProcesses {
 public:
  using Result = std::expected<ChildResult, PlatformError>;
  using Child = std::function<Result(const ChildCommand&, const ChildEnding&)>;

  std::expected<ChildResult, PlatformError> run(const ChildCommand& command,
                                                const ChildEnding& ending = {}) override;

  /// What the next run that has no line yet does.
  void script(Child child);
  void script(Result result);

  /// What every run does for which the script has no line.
  void answerAlways(Child child);

  /// Every command that was run, in order.
  std::vector<ChildCommand> commands() const;

  /// A child that has hung and was ended by now, with what it wrote before: for tests that run background
  /// work late. One that nobody ended fails the test.
  static Child hung(std::string output = {});

  /// A child that holds its thread until it is ended; one that ignores TERM waits for KILL.
  static Child hangs();
  static Child hangsIgnoringTerminate();

 private:
  mutable std::mutex mutex_;
  std::deque<Child> script_;
  Child always_;
  std::vector<ChildCommand> commands_;
};

}  // namespace ostrel
