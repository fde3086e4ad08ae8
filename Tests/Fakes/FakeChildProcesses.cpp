#include "Tests/Fakes/FakeChildProcesses.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <semaphore>
#include <utility>

namespace ostrel {

namespace {

ChildResult endedBy(const ChildEnding& ending, std::string output) {
  return {ending.kill.stop_requested() ? SIGKILL : SIGTERM, std::move(output)};
}

}  // namespace

std::expected<ChildResult, PlatformError> FakeChildProcesses::run(const ChildCommand& command,
                                                                  const ChildEnding& ending) {
  Child child;
  {
    const std::lock_guard lock(mutex_);
    commands_.push_back(command);
    if (ending.kill.stop_requested() || ending.terminate.stop_requested()) {
      // A hung child is scripted for a run that is ended; any other child would not have been started.
      if (script_.empty()) return endedBy(ending, {});
    }
    child = always_;
    if (!script_.empty()) {
      child = std::move(script_.front());
      script_.pop_front();
    }
  }
  if (child) return child(command, ending);
  ADD_FAILURE() << "no script for a run of " << command.executable;
  return std::unexpected(PlatformError{"FakeErrorDomain", 1, "not scripted"});
}

void FakeChildProcesses::script(Child child) {
  const std::lock_guard lock(mutex_);
  script_.push_back(std::move(child));
}

void FakeChildProcesses::script(Result result) {
  script([result = std::move(result)](const ChildCommand&, const ChildEnding&) { return result; });
}

void FakeChildProcesses::answerAlways(Child child) {
  const std::lock_guard lock(mutex_);
  always_ = std::move(child);
}

std::vector<ChildCommand> FakeChildProcesses::commands() const {
  const std::lock_guard lock(mutex_);
  return commands_;
}

FakeChildProcesses::Child FakeChildProcesses::hung(std::string output) {
  return [output = std::move(output)](const ChildCommand& command, const ChildEnding& ending) -> Result {
    if (ending.kill.stop_requested() || ending.terminate.stop_requested()) return endedBy(ending, output);
    ADD_FAILURE() << "nobody ended the hung " << command.executable;
    return std::unexpected(PlatformError{"FakeErrorDomain", 2, "hung"});
  };
}

FakeChildProcesses::Child FakeChildProcesses::hangs() {
  return [](const ChildCommand&, const ChildEnding& ending) -> Result {
    std::counting_semaphore<2> ended(0);
    const std::stop_callback terminated(ending.terminate, [&ended] { ended.release(); });
    const std::stop_callback killed(ending.kill, [&ended] { ended.release(); });
    ended.acquire();
    return endedBy(ending, {});
  };
}

FakeChildProcesses::Child FakeChildProcesses::hangsIgnoringTerminate() {
  return [](const ChildCommand&, const ChildEnding& ending) -> Result {
    std::binary_semaphore ended(0);
    const std::stop_callback killed(ending.kill, [&ended] { ended.release(); });
    ended.acquire();
    return endedBy(ending, {});
  };
}

}  // namespace ostrel
