#include <gtest/gtest.h>

#include "Platform/Linux/CombinedSystemWake.hpp"
#include "Tests/Fakes/FakeSystemWake.hpp"

namespace ostrel {
namespace {

TEST(SystemWakeTest, IsToldByEachOfSeveralServicesWhileSomebodyFollows) {
  FakeSystemWake first;
  FakeSystemWake second;
  CombinedSystemWake both({&first, &second});
  int wakes = 0;
  auto token = both.follow([&] { ++wakes; });
  first.wake();
  EXPECT_EQ(wakes, 1);
  second.wake();
  EXPECT_EQ(wakes, 2);
  token.reset();
  EXPECT_FALSE(first.isFollowed() || second.isFollowed());
}

}  // namespace
}  // namespace ostrel
