#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Decides which status runs start and which publish. A run's age counts the seconds that the main queue
/// served, so that neither sleep nor a stopped process makes a run old.
class StatusRunLimiter {
 public:
  static constexpr int secondsUntilNext = 5;   ///< age from which the latest run holds up no request
  static constexpr int secondsUntilOver = 15;  ///< age at which a run is over, whatever it still waits for
  /// With that many killed helpers and stuck threads left, no helper is started.
  static constexpr std::size_t maxLeftBehind = 2;

  /// Requests a run; a run serves all requests made before it starts.
  void request() { isRequested_ = true; }

  /// The number of a run to start now; no value while none is requested or the latest is too young.
  std::optional<std::uint64_t> begin();

  /// Adds a second to the age of a running run; true when it has reached its limit.
  bool countSecond(std::uint64_t number);

  /// Ends a run; true when its result is to be published, because no later run has ended yet.
  bool finish(std::uint64_t number);

  /// The number of the latest run, 0 before the first.
  std::uint64_t latest() const { return latest_; }

 private:
  std::map<std::uint64_t, int> ages_;  ///< of the current runs
  std::uint64_t latest_ = 0;
  std::uint64_t latestFinished_ = 0;
  bool isRequested_ = false;
};

/// Limits the loads of one kind that never complete: after `maxUnanswered` of them, one a minute is started.
class LoadLimiter {
 public:
  static constexpr std::uint64_t maxUnanswered = 4;
  static constexpr std::chrono::seconds retryInterval{60};

  explicit LoadLimiter(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  /// The number of a load to start now; no value when none may start.
  std::optional<std::uint64_t> ask();

  /// Marks a load as completed, and with it all loads before it.
  void answer(std::uint64_t number);

 private:
  bool isExhausted() const { return asked_ - answered_ >= maxUnanswered; }

  MainQueue& mainQueue_;
  std::uint64_t asked_ = 0;
  std::uint64_t answered_ = 0;
  ScheduledWork pause_;  ///< set while no load may start
};

}  // namespace ostrel
