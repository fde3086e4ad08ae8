#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <memory>
#include <random>
#include <semaphore>
#include <thread>
#include <utility>

#include "OstrelAgent/Status/StatusRefresher.hpp"
#include "Tests/Fakes/FakeHost.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Time = std::chrono::milliseconds;

constexpr Time never = 24h;

/// A thread of the status queue that is suspended while its helper runs. One thread runs at a time, so that a
/// seed always gives the same course.
class RunThread {
 public:
  explicit RunThread(std::function<void()> work)
      : thread_([this, work = std::move(work)] {
          current = this;
          resumed_.acquire();
          work();
          isOver_ = true;
          suspended_.release();
        }) {}

  /// Runs until the helper has started, or to the end.
  void resume() {
    resumed_.release();
    suspended_.acquire();
  }

  /// Called by the work itself.
  void suspend() {
    suspended_.release();
    resumed_.acquire();
  }

  bool isOver() const { return isOver_; }

  static thread_local RunThread* current;

 private:
  std::binary_semaphore resumed_{0};
  std::binary_semaphore suspended_{0};
  bool isOver_ = false;
  std::jthread thread_;
};

thread_local RunThread* RunThread::current = nullptr;

/// The children and threads of status runs, on a clock that the test advances.
class SimulatedRuns final : public ChildProcesses, public BackgroundQueue {
 public:
  struct Child {
    Time due{};
    RunThread* thread = nullptr;  ///< waits for it; none once it was killed
    bool isKilled = false;
  };

  Time now{};              ///< advances while the agent is stopped, but not during sleep
  Time helperTime = 50ms;  ///< from the start of a helper to its end
  bool canBeEnded = true;  ///< killed helpers end

  void run(QualityOfService, std::function<void()> work) override {
    std::erase_if(threads_, [](const auto& thread) { return thread->isOver(); });
    threads_.push_back(std::make_unique<RunThread>(std::move(work)));
    threads_.back()->resume();
  }

  std::expected<ChildResult, PlatformError> run(const ChildCommand&, const ChildStopTokens& stop,
                                                const ChildOutput&) override {
    const auto child = children_.insert(children_.end(), {now + helperTime, RunThread::current});
    const std::stop_callback killing(stop.kill, [&] { child->isKilled = true; });
    child->thread->suspend();
    child->thread = nullptr;
    if (child->isKilled) return ChildResult{9, reportText()};
    children_.erase(child);
    return ChildResult{0, reportText()};
  }

  std::size_t reapKilled() override {
    if (canBeEnded) std::erase_if(children_, &isLeft);
    return countLeft();
  }

  std::expected<void, PlatformError> start(const ChildCommand&) override { return {}; }

  /// Ends the helpers that are due, and returns from those that were killed.
  void endHelpers() {
    const auto isOver = [&](const Child& child) {
      return child.thread != nullptr && (child.isKilled || child.due <= now);
    };
    for (auto over = std::ranges::find_if(children_, isOver); over != children_.end();
         over = std::ranges::find_if(children_, isOver)) {
      over->thread->resume();
    }
  }

  /// Lets a helper that never ends by itself end at last.
  void endAll() {
    for (auto& child : children_) child.due = now;
    endHelpers();
  }

  std::size_t countChildren() const { return children_.size(); }
  std::size_t countLeft() const {
    return static_cast<std::size_t>(std::ranges::count_if(children_, &isLeft));
  }

 private:
  static bool isLeft(const Child& child) { return child.isKilled && child.thread == nullptr; }

  std::list<Child> children_;  ///< not reaped
  std::list<std::unique_ptr<RunThread>> threads_;
};

/// A refresher over random hours: helpers that are quick, slow, hang or cannot be ended, loads that never
/// complete, stops of the process, wakes, bursts of panel openings.
class Simulation {
 public:
  explicit Simulation(unsigned seed) : random_(seed) {
    host_.files.putExecutable(host_.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
    refresher_->start([this](const RefreshResult& result) { publish(result); });
    tick_ = host_.mainQueue.every(5s, [this] { refresher_->request(); });
  }
  ~Simulation() {
    refresher_ = nullptr;
    runs_.endAll();
  }
  Simulation(const Simulation&) = delete;
  Simulation& operator=(const Simulation&) = delete;

  void run(int phases) {
    for (; phases > 0 && !testing::Test::HasFailure(); --phases) runPhase();
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }

  void runPhase() {
    constexpr Time helperTimes[] = {50ms, 50ms, 6s, 14s, never};
    runs_.helperTime = helperTimes[below(5)];
    runs_.canBeEnded = below(3) > 0;
    host_.networkPreferences.isDeferred = below(4) == 0;
    const bool isWell = runs_.helperTime == 50ms && !host_.networkPreferences.isDeferred;
    if (runs_.helperTime == 50ms) runs_.canBeEnded = true;
    if (runs_.helperTime == never) lastHang_ = awake_;
    if (host_.networkPreferences.isDeferred) lastLost_ = awake_;
    wellSince_ = isWell ? std::optional(awake_) : std::nullopt;
    for (auto steps = 50 + below(2000); steps > 0 && !testing::Test::HasFailure(); --steps) step();
  }

  void step() {
    if (runs_.helperTime == never || runs_.countLeft() >= 2) lastHang_ = awake_;
    if (host_.networkPreferences.isDeferred) lastLost_ = awake_;
    if (below(300) == 0) stop();
    if (below(400) == 0) host_.systemWake.wake();
    if (below(200) == 0) openings_ = 1 + below(30);
    if (openings_ > 0) {
      --openings_;
      refresher_->request();
    }
    pass(100ms);
    check();
  }

  void pass(Time time) {
    runs_.now += time;
    runs_.endHelpers();
    awake_ += time;
    host_.mainQueue.advance(time);
    // Runs killed meanwhile return at once.
    runs_.endHelpers();
    host_.mainQueue.runAll();
    noteBegun();
  }

  /// The process is stopped: helpers continue, the main queue is not served.
  void stop() {
    const Time time = 1s * (1 + below(60));
    runs_.now += time;
    host_.mainQueue.fallBehind(time);
  }

  void noteBegun() {
    while (begunAt_.size() < refresher_->latestRun()) begunAt_.push_back(awake_);
  }

  void publish(const RefreshResult& result) {
    noteBegun();
    EXPECT_GT(result.run, shown_.run) << "an older run overwrites a newer one";
    shown_ = result;
    const bool isFailure = result.inputs.helper->status != 0;
    const auto begun = begunAt_.at(result.run - 1);
    EXPECT_TRUE(!isFailure || (lastHang_ && begun - *lastHang_ <= 20s))
        << "a helper that ends by itself failed";
  }

  void check() const {
    EXPECT_LE(awake_ - (shown_.run == 0 ? Time() : begunAt_.at(shown_.run - 1)), 23s)
        << "the shown status is old";
    EXPECT_LE(runs_.countChildren() - runs_.countLeft(), 4U) << "more than four runs are under way";
    EXPECT_LE(runs_.countLeft(), 4U) << "more than four children are left that cannot be ended";
    if (!wellSince_) return;
    const auto well = awake_ - *wellSince_;
    EXPECT_TRUE(well <= 20s || runs_.countChildren() <= 1) << "a child is left";
    // After helpers and loads that hung, the first that are well may still be those of runs begun before.
    const bool isAfterLostLoads = lastLost_ && awake_ - *lastLost_ <= 66s;
    if (well <= (isAfterLostLoads ? 66s : 6s)) return;
    EXPECT_GE(begunAt_.at(shown_.run - 1), *wellSince_) << "the current status does not show";
    const auto& inputs = shown_.inputs;
    EXPECT_TRUE(inputs.helper->status == 0 && inputs.transparentProxies && inputs.contentFilter);
  }

  std::mt19937 random_;
  FakeHost host_;
  SimulatedRuns runs_;
  std::shared_ptr<StatusRefresher> refresher_ = std::make_shared<StatusRefresher>(
      StatusRefresher::Services{host_.mainQueue, runs_, runs_, host_.networkPreferences, host_.systemWake},
      HelperRunner(host_.bundle, host_.files, runs_, host_.standardStreams), NetworkLoads::all);
  ScheduledWork tick_;
  Time awake_{};
  std::optional<Time> wellSince_;
  std::optional<Time> lastHang_;
  std::optional<Time> lastLost_;
  std::vector<Time> begunAt_;  ///< of each run
  RefreshResult shown_;
  std::size_t openings_ = 0;
};

TEST(StatusRefresherSimulation, TheStatusIsNeverOldAndNothingPilesUp) {
  for (unsigned seed = 1; seed <= 8 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    Simulation(seed).run(20);
  }
}

}  // namespace
}  // namespace ostrel
