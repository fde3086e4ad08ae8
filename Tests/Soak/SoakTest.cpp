#include <gtest/gtest.h>

#include "Tests/Soak/FakeClockSoak.hpp"
#include "Tests/Soak/SoakFigures.hpp"

namespace ostrel {
namespace {

TEST(Soak, RandomDaysBreakNoRule) {
  for (const std::uint64_t seed : {1U, 2U, 3U}) {
    FakeClockSoak soak(seed);
    EXPECT_EQ(soak.run(200), std::nullopt) << "seed " << seed;
    EXPECT_GE(soak.refreshes(), 200);
  }
}

TEST(Soak, ReportsWhatHasGrown) {
  const SoakFigures rest{.refreshes = 10, .descriptors = 9, .threads = 3, .children = 0, .residentKiB = 4000};
  const auto faultOf = [&](auto change) {
    SoakRun run{rest, {rest, rest, rest, rest}};
    change(run);
    return run.fault().value_or("");
  };
  EXPECT_EQ(faultOf([](SoakRun&) {}), "");
  EXPECT_EQ(faultOf([](SoakRun& run) { run.quarters[3].residentKiB = 4512; }), "");
  EXPECT_EQ(faultOf([](SoakRun& run) { run.quarters[0].residentKiB = 1000; }), "");
  EXPECT_TRUE(faultOf([](SoakRun& run) { run.quarters[3].residentKiB = 4513; }).contains("513 KiB"));
  EXPECT_TRUE(faultOf([](SoakRun& run) { run.quarters[3].descriptors = 10; }).starts_with("descriptors"));
  EXPECT_TRUE(faultOf([](SoakRun& run) { run.quarters[3].threads = 2; }).starts_with("threads"));
  EXPECT_TRUE(faultOf([](SoakRun& run) { run.warm.children = 1; }).starts_with("children"));
  EXPECT_NE(faultOf([](SoakRun& run) { run.quarters.pop_back(); }), "");
}

}  // namespace
}  // namespace ostrel
