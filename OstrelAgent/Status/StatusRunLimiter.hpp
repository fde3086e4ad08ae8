#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Decides which status runs start and which publish. A run's age is counted in seconds that the main queue
/// served, so that neither sleep nor a stopped process makes it old.
class StatusRunLimiter {
 public:
  static constexpr int secondsUntilNext = 5;   ///< age from which the latest run holds up no request
  static constexpr int secondsUntilOver = 15;  ///< age at which a run is over, whatever it still waits for
  /// With that many killed helpers and stuck threads left, no helper is started.
  static constexpr std::size_t maxLeftBehind = 2;

  /// Asks for a run; one that starts serves every request before it.
  void request() { isRequested_ = true; }

  /// The number of a run to start now; no value while none is asked for or the latest is too young.
  std::optional<std::uint64_t> begin();

  /// Adds a second to the age of a run under way; true when that makes it over.
  bool countSecond(std::uint64_t number);

  /// Ends a run under way; true when its result is to be published, because no later run has ended yet.
  bool finish(std::uint64_t number);

  /// The number of the run that was started last, 0 before the first.
  std::uint64_t latest() const { return latest_; }

 private:
  std::map<std::uint64_t, int> ages_;  ///< of the runs under way
  std::uint64_t latest_ = 0;
  std::uint64_t latestFinished_ = 0;
  bool isRequested_ = false;
};

/// Bounds the loads of one kind that the system never answers: after `maxUnanswered` of them one a minute is
/// asked.
class LoadLimiter {
 public:
  static constexpr std::uint64_t maxUnanswered = 4;
  static constexpr std::chrono::seconds retryInterval{60};

  explicit LoadLimiter(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  /// The number of a load to ask for now; no value when none is to be asked.
  std::optional<std::uint64_t> ask();

  /// Takes the answer to a load, which makes up for all that were asked before it.
  void answer(std::uint64_t number);

 private:
  bool isExhausted() const { return asked_ - answered_ >= maxUnanswered; }

  MainQueue& mainQueue_;
  std::uint64_t asked_ = 0;
  std::uint64_t answered_ = 0;
  ScheduledWork pause_;  ///< set while no load is asked
};

}  // namespace ostrel
