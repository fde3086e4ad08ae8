#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <stop_token>

#include "Platform/ChildProcesses.hpp"
#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Keeps the status runs bounded while a helper hangs. With all places taken a new request ends the oldest
/// run, politely at first, and waits for its place; requests that come meanwhile share that place. Main
/// thread.
class StatusRunLimiter {
 public:
  static constexpr std::size_t mostOutstanding = 4;
  static constexpr std::chrono::milliseconds graceBeforeKill{2000};

  struct Run {
    std::uint64_t number = 0;  ///< ascending in the order of starting
    ChildStopTokens ending;
  };

  explicit StatusRunLimiter(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  /// A new run, or nothing when the request has to wait for a place.
  std::optional<Run> begin();

  /// How a run that is over goes on.
  struct Finish {
    bool mayPublish = true;      ///< false for a run that was ended and that a later one has overtaken
    bool wasEnded = false;       ///< for its place, by a later request
    bool startsWaiting = false;  ///< a request waits for the place: begin anew
  };
  Finish finish(std::uint64_t number);

 private:
  struct Outstanding {
    std::uint64_t number = 0;
    std::stop_source terminate;
    std::stop_source kill;
    ScheduledWork killTimer;  ///< set once the run is being ended

    bool isBeingEnded() const { return killTimer != nullptr; }
  };

  void endOldest();

  MainQueue& mainQueue_;
  std::deque<Outstanding> outstanding_;
  std::uint64_t started_ = 0;
  std::uint64_t latestFinished_ = 0;
  bool isRequestWaiting_ = false;
};

}  // namespace ostrel
