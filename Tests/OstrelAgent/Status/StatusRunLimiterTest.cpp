#include "OstrelAgent/Status/StatusRunLimiter.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeMainQueue.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

struct StatusRunLimiterTest : testing::Test {
  /// The run that a request starts, 0 when it starts none.
  std::uint64_t request() {
    limiter.request();
    return limiter.begin().value_or(0);
  }

  /// Lets that many seconds pass for the run; true when it is over by them.
  bool age(std::uint64_t run, int seconds) {
    bool isOver = false;
    while (seconds-- > 0) isOver = limiter.countSecond(run);
    return isOver;
  }

  StatusRunLimiter limiter;
};

TEST_F(StatusRunLimiterTest, OneRunServesEveryRequestOfFiveSeconds) {
  EXPECT_EQ(limiter.begin(), std::nullopt) << "none was requested";
  EXPECT_EQ(request(), 1U);
  for (int i = 0; i < 50; ++i) EXPECT_EQ(request(), 0U);
  age(1, 4);
  EXPECT_EQ(limiter.begin(), std::nullopt);
  age(1, 1);
  EXPECT_EQ(limiter.begin(), 2U);
  EXPECT_EQ(limiter.begin(), std::nullopt) << "the requests are served";
  EXPECT_EQ(request(), 0U);
  EXPECT_TRUE(limiter.finish(2));
  EXPECT_EQ(limiter.begin(), 3U) << "the latest is over; an earlier one under way holds nothing up";
}

TEST(LoadLimiter, AsksOnceAMinuteWhileFourLoadsAreUnanswered) {
  FakeClock clock;
  FakeMainQueue queue(clock);
  LoadLimiter loads(queue);
  for (std::uint64_t load = 1; load <= 4; ++load) EXPECT_EQ(loads.ask(), load);
  EXPECT_EQ(loads.ask(), std::nullopt);
  queue.advance(59s);
  EXPECT_EQ(loads.ask(), std::nullopt);
  queue.advance(1s);
  EXPECT_EQ(loads.ask(), 5U);
  EXPECT_EQ(loads.ask(), std::nullopt) << "a further minute begins";
  loads.answer(1);
  EXPECT_EQ(loads.ask(), std::nullopt) << "four later loads are unanswered";
  loads.answer(3);
  EXPECT_EQ(loads.ask(), 6U);
  loads.answer(2);
  EXPECT_EQ(loads.ask(), 7U) << "the answer to an earlier load does not reset the count";
  EXPECT_EQ(loads.ask(), std::nullopt);
}

}  // namespace
}  // namespace ostrel
