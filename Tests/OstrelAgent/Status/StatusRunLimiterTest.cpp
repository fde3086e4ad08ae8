#include "OstrelAgent/Status/StatusRunLimiter.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "Tests/Fakes/FakeMainQueue.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

struct StatusRunLimiterTest : testing::Test {
  /// Takes every place; the runs are numbered from 1.
  void begin(int count) {
    for (int i = 0; i < count; ++i) {
      auto run = runs.begin();
      ASSERT_TRUE(run);
      begun.push_back(std::move(*run));
    }
  }
  bool isTerminated(std::size_t number) const { return begun[number - 1].ending.terminate.stop_requested(); }
  bool isKilled(std::size_t number) const { return begun[number - 1].ending.kill.stop_requested(); }

  FakeClock clock;
  FakeMainQueue queue{clock};
  StatusRunLimiter runs{queue};
  std::vector<StatusRunLimiter::Run> begun;
};

TEST_F(StatusRunLimiterTest, AFifthRequestEndsTheOldestAndKillsItOnlyAfterTwoSeconds) {
  begin(4);
  EXPECT_FALSE(isTerminated(1));
  EXPECT_FALSE(runs.begin());
  EXPECT_TRUE(isTerminated(1));
  queue.advance(1999ms);
  EXPECT_FALSE(runs.begin()) << "a further request grants no further grace";
  EXPECT_FALSE(isKilled(1));
  queue.advance(1ms);
  EXPECT_TRUE(isKilled(1));
  for (std::size_t number = 2; number <= 4; ++number) EXPECT_FALSE(isTerminated(number)) << number;
}

TEST_F(StatusRunLimiterTest, RequestsThatWaitShareOnePlaceAndEndNoFurtherRun) {
  begin(4);
  for (int i = 0; i < 50; ++i) EXPECT_FALSE(runs.begin());
  EXPECT_FALSE(isTerminated(2));
  EXPECT_EQ(queue.countTimers(), 1U);
  EXPECT_TRUE(runs.finish(1).startsWaiting);
  EXPECT_EQ(queue.countTimers(), 0U) << "nothing is left to kill";
  begin(1);
  EXPECT_FALSE(runs.finish(2).startsWaiting);
}

TEST_F(StatusRunLimiterTest, APlaceThatBecomesFreeByItselfServesTheRequestThatWaits) {
  begin(4);
  EXPECT_FALSE(runs.begin());
  EXPECT_TRUE(runs.finish(3).startsWaiting);
  begin(1);
  EXPECT_FALSE(runs.begin());
  EXPECT_FALSE(isTerminated(2)) << "the first, still on its way out, is the one that makes room";
}

TEST_F(StatusRunLimiterTest, ARunThatWasNotEndedIsPublishedInWhateverOrderItFinishes) {
  begin(3);
  for (const std::uint64_t number : {3U, 1U, 2U}) EXPECT_TRUE(runs.finish(number).mayPublish) << number;
}

TEST_F(StatusRunLimiterTest, ARunThatWasEndedIsPublishedUnlessALaterOneHasFinished) {
  for (const bool isOvertaken : {false, true}) {
    StatusRunLimiter fresh(queue);
    for (int i = 0; i < 4; ++i) ASSERT_TRUE(fresh.begin());
    EXPECT_FALSE(fresh.begin());
    if (isOvertaken) {
      EXPECT_TRUE(fresh.finish(2).mayPublish);
    }
    EXPECT_EQ(fresh.finish(1).mayPublish, !isOvertaken);
  }
}

}  // namespace
}  // namespace ostrel
