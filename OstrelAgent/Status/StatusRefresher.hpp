#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <stop_token>

#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/Status/StatusRead.hpp"
#include "OstrelAgent/Status/StatusRunLimiter.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/SystemWake.hpp"

namespace ostrel {

/// The result of one run.
struct RefreshResult {
  std::uint64_t run = 0;  ///< ascending in start order
  StatusInputs inputs;
};

/// Which of the network preferences a refresh loads.
enum class NetworkLoads { transparentProxies, all };

/// Reads the Mac's status on request and publishes each result unless a later run has already ended. A hung
/// helper or load is given up after `StatusRunLimiter::secondsUntilOver`, so old results never stay. Main
/// thread; background work holds it weakly, and the destructor ends every run.
class StatusRefresher : public std::enable_shared_from_this<StatusRefresher> {
 public:
  /// The exit status for a helper that was killed, or not started because earlier ones cannot be killed.
  static constexpr std::int32_t killedStatus = 9;

  struct Services {
    MainQueue& mainQueue;
    BackgroundQueue& statusQueue;
    ChildProcesses& childProcesses;
    NetworkPreferences& networkPreferences;
    SystemWake& systemWake;
  };

  StatusRefresher(Services services, HelperRunner helper, NetworkLoads loads);
  StatusRefresher(const StatusRefresher&) = delete;
  StatusRefresher& operator=(const StatusRefresher&) = delete;
  ~StatusRefresher();

  /// Starts the first run; each wake from sleep then requests another. Call once.
  void start(std::function<void(const RefreshResult&)> published);

  /// Requests a run. While the latest one is running and younger than `StatusRunLimiter::secondsUntilNext`,
  /// all requests share one run that starts after it.
  void request();

  /// The number of the latest run, 0 before the first.
  std::uint64_t latestRun() const { return limiter_.latest(); }

 private:
  struct Run;
  using Runs = std::list<Run>;

  void beginIfDue();
  void begin(std::uint64_t number);
  void countSeconds(Run& run);
  void load(Run& run);
  void runHelper(Run& run);
  void finishHelper(std::uint64_t number, const std::shared_ptr<const HelperReading>& reading);
  template <class Loaded>
  void finishLoad(std::uint64_t number, std::optional<std::uint64_t> Run::*load,
                  std::optional<Loaded> StatusInputs::*member, const Loaded& loaded);
  void giveUp(Runs::iterator run);
  void finishIfComplete(std::uint64_t number);
  void finish(Runs::iterator run);
  Runs::iterator find(std::uint64_t number);

  Services services_;
  HelperRunner helper_;
  const NetworkLoads loads_;
  std::function<void(const RefreshResult&)> published_;
  StatusRunLimiter limiter_;
  LoadLimiter proxyLoads_;
  LoadLimiter filterLoads_;
  Runs runs_;                                      ///< in the order of starting
  std::shared_ptr<const HelperReading> previous_;  ///< the latest that came
  ScheduledWork wakeObserver_;
};

}  // namespace ostrel
