#include "Tests/Fakes/FakeChildProcesses.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <utility>

namespace ostrel {

std::expected<ChildResult, PlatformError> FakeChildProcesses::run(const ChildCommand& command,
                                                                  const ChildEnding& ending) {
  Child always;
  {
    const std::lock_guard lock(mutex_);
    commands_.push_back(command);
    if (ending.kill.stop_requested()) return ChildResult{SIGKILL, ""};
    if (ending.terminate.stop_requested()) return ChildResult{SIGTERM, ""};
    if (!script_.empty()) {
      auto result = std::move(script_.front());
      script_.pop_front();
      return result;
    }
    always = always_;
  }
  if (always) return always(command, ending);
  ADD_FAILURE() << "no script for a run of " << command.executable;
  return std::unexpected(PlatformError{"FakeErrorDomain", 1, "not scripted"});
}

void FakeChildProcesses::script(Result result) {
  const std::lock_guard lock(mutex_);
  script_.push_back(std::move(result));
}

void FakeChildProcesses::answerAlways(Child child) {
  const std::lock_guard lock(mutex_);
  always_ = std::move(child);
}

std::vector<ChildCommand> FakeChildProcesses::commands() const {
  const std::lock_guard lock(mutex_);
  return commands_;
}

}  // namespace ostrel
