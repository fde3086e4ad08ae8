#include "OstrelAgent/Status/StatusRefresher.hpp"

#include <gtest/gtest.h>

#include <deque>

#include "Tests/Fakes/FakeHost.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

constexpr auto killed = StatusRefresher::killedStatus;

/// A refresher on a host of fakes. A run whose work waits on the status queue is one whose helper hangs.
struct StatusRefresherTest : testing::Test {
  StatusRefresherTest() {
    host.files.putExecutable(host.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
    host.childProcesses.answer = [this](const ChildCommand&) { return ChildResult{0, report}; };
    refresher->start([this](const RefreshResult& result) { published.push_back(result); });
  }

  void runNext() {
    host.statusQueue.runNext();
    host.mainQueue.runAll();
  }
  std::size_t waitingRuns() const { return host.statusQueue.countWaiting(); }
  void settle() {
    while (host.statusQueue.countWaiting() > 0) runNext();
    host.mainQueue.runAll();
  }
  void tick(std::chrono::seconds time) {
    for (; time > 0s; time -= 5s) {
      refresher->request();
      host.mainQueue.advance(5s);
    }
  }

  std::vector<std::uint64_t> publishedRuns() const {
    std::vector<std::uint64_t> runs;
    for (const auto& result : published) runs.push_back(result.run);
    return runs;
  }
  const StatusInputs& shown() const { return published.back().inputs; }
  std::string verdict() const { return statusSnapshot(shown()).verdict; }

  FakeHost host;
  std::string report = reportText();
  std::deque<RefreshResult> published;
  std::shared_ptr<StatusRefresher> refresher = std::make_shared<StatusRefresher>(
      StatusRefresher::Services{host.mainQueue, host.statusQueue, host.childProcesses,
                                host.networkPreferences, host.systemWake},
      HelperRunner(host.bundle, host.files, host.childProcesses, host.standardStreams), NetworkLoads::all);
};

using Runs = std::vector<std::uint64_t>;

TEST_F(StatusRefresherTest, AnUnreapableHelperBesideHangingOnesNeverFreezesTheStatus) {
  settle();
  EXPECT_EQ(shown().helper->status, 0);
  host.childProcesses.unreapable = 1;
  tick(10s);
  host.mainQueue.advance(4999ms);
  EXPECT_EQ(publishedRuns(), Runs{1}) << "three helpers hang, none for fifteen seconds yet";
  for (int minute = 0; minute < 3; ++minute) {
    const auto before = published.size();
    tick(60s);
    EXPECT_GE(published.size(), before + 11);
    EXPECT_EQ(shown().helper->status, killed);
    EXPECT_LE(waitingRuns(), 10U) << "threads that are stuck do not pile up";
  }
}

TEST_F(StatusRefresherTest, UnfinishedLoadsAreUnknownAfterFifteenSeconds) {
  host.networkPreferences.isDeferred = true;
  for (int second = 0; second < 240; second += 5) {
    tick(5s);
    settle();
    if (second < 15) continue;
    EXPECT_LE(refresher->latestRun() - published.back().run, 3U) << second;
    EXPECT_EQ(verdict(), "protected");
    EXPECT_FALSE(shown().transparentProxies || shown().contentFilter) << second;
  }
  EXPECT_LE(host.networkPreferences.countDeferred(), 2 * (4 + 4))
      << "after four of a kind one load a minute begins";
  host.networkPreferences.isDeferred = false;
  for (int second = 0; second < 66; second += 5) {
    tick(5s);
    settle();
  }
  EXPECT_TRUE(shown().transparentProxies && shown().contentFilter);
}

TEST_F(StatusRefresherTest, AHelperThatJustEndsIsNoneThatIsLeftBehind) {
  host.childProcesses.unreapable = 1;
  host.mainQueue.advance(14999ms);
  refresher->request();
  host.mainQueue.advance(1ms);
  EXPECT_EQ(shown().helper->status, killed);
  settle();
  EXPECT_EQ(shown().helper->status, 0) << "the run that was killed holds no thread any more";
}

TEST_F(StatusRefresherTest, OverlappingRunsArePublishedAsSoonAsTheyEnd) {
  settle();
  refresher->request();
  host.mainQueue.advance(5s);
  report = reportText("not_protected");
  refresher->request();
  ASSERT_EQ(waitingRuns(), 2U);
  runNext();
  EXPECT_EQ(verdict(), "not_protected");
  report = reportText();  // the report at the start of both
  runNext();
  EXPECT_EQ(verdict(), "protected");
  EXPECT_EQ(publishedRuns(), (Runs{1, 2, 3}));
}

TEST_F(StatusRefresherTest, AnOvertakenRunIsDropped) {
  settle();
  host.networkPreferences.isDeferred = true;
  refresher->request();
  runNext();
  host.networkPreferences.isDeferred = false;
  host.mainQueue.advance(5s);
  refresher->request();
  runNext();
  EXPECT_EQ(publishedRuns(), (Runs{1, 3}));
  while (host.networkPreferences.countDeferred() > 0) host.networkPreferences.completeNext();
  host.mainQueue.runAll();
  EXPECT_EQ(publishedRuns(), (Runs{1, 3}));
}

TEST_F(StatusRefresherTest, ARequestDuringARunStartsTheNextWhenItEnds) {
  refresher->request();
  refresher->request();
  EXPECT_EQ(waitingRuns(), 1U);
  runNext();
  EXPECT_EQ(waitingRuns(), 1U);
  runNext();
  EXPECT_EQ(waitingRuns(), 0U);
  EXPECT_EQ(publishedRuns(), (Runs{1, 2}));
}

TEST_F(StatusRefresherTest, OnlySecondsServedByTheMainQueueMakeARunOld) {
  for (int stop = 0; stop < 14; ++stop) {
    host.mainQueue.fallBehind(10min);
    host.mainQueue.advance(0s);
  }
  host.clock.set(host.clock.now() + 24h);
  EXPECT_TRUE(published.empty());
  runNext();
  EXPECT_EQ(shown().helper->status, 0);
}

TEST_F(StatusRefresherTest, AHelperIsKilledAfterFifteenSecondsAndItsOutputDropped) {
  host.mainQueue.advance(14999ms);
  EXPECT_TRUE(published.empty());
  host.mainQueue.advance(1ms);
  EXPECT_EQ(shown().helper->status, killed);
  EXPECT_EQ(statusSnapshot(shown()).statusError, "agent status unavailable (exit 9)");
  bool wasKilled = false;
  host.childProcesses.whileRunning = [&](const auto&, const ChildStopTokens& stop, const auto&) {
    wasKilled = stop.kill.stop_requested();
  };
  host.childProcesses.answer = [&](const ChildCommand&) { return ChildResult{0, report}; };
  runNext();
  EXPECT_EQ(publishedRuns(), Runs{1});
  EXPECT_EQ(host.mainQueue.countTimers(), 0U);
}

TEST_F(StatusRefresherTest, TwoUnreapableHelpersPreventAThirdButNotTheLoads) {
  settle();
  host.childProcesses.unreapable = 2;
  const auto started = host.childProcesses.commands.size();
  host.networkPreferences.contentFilter = ContentFilterConfiguration{.hasProvider = true};
  refresher->request();
  settle();
  EXPECT_EQ(host.childProcesses.commands.size(), started);
  EXPECT_EQ(shown().helper->status, killed);
  EXPECT_TRUE((*shown().contentFilter)->hasProvider);
  host.childProcesses.unreapable = 0;
  refresher->request();
  settle();
  EXPECT_EQ(shown().helper->status, 0);
}

TEST_F(StatusRefresherTest, AnUnchangedReportIsNotDecodedAgainAndAHugeOneIsNotKept) {
  settle();
  const auto first = shown().helper;
  refresher->request();
  settle();
  EXPECT_EQ(shown().helper, first);
  report += std::string(HelperReading::maxKeptOutput, ' ');
  for (int run = 0; run < 2; ++run) {
    refresher->request();
    settle();
    EXPECT_TRUE(shown().helper->report);
    EXPECT_EQ(shown().helper->output, std::nullopt);
  }
  report = "";
  refresher->request();
  settle();
  EXPECT_EQ(statusSnapshot(shown()).statusError, "agent status unavailable (exit 0)");
  report = reportText() + std::string(HelperReading::maxReportSize, ' ');
  refresher->request();
  settle();
  EXPECT_EQ(statusSnapshot(shown()).statusError, "agent status unavailable (exit 0)") << "refused unread";
}

TEST_F(StatusRefresherTest, AWakeRequestsARun) {
  settle();
  host.systemWake.wake();
  settle();
  EXPECT_EQ(publishedRuns(), (Runs{1, 2}));
}

TEST_F(StatusRefresherTest, ADestroyedRefresherPublishesNothing) {
  settle();
  published.clear();
  host.networkPreferences.isDeferred = true;
  refresher->request();
  runNext();
  refresher = nullptr;
  host.networkPreferences.completeNext();
  host.mainQueue.runAll();
  host.systemWake.wake();
  host.mainQueue.advance(1min);
  EXPECT_TRUE(published.empty());
  EXPECT_EQ(host.mainQueue.countTimers() + host.statusQueue.countWaiting(), 0U);
}

}  // namespace
}  // namespace ostrel
