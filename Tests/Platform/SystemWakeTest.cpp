#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Platform/Linux/CombinedSystemWake.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"
#include "Tests/Fakes/FakeSystemWake.hpp"

namespace ostrel {
namespace {

using Told = std::vector<std::string>;

struct SystemWakeTest : testing::Test {
  PosixMainQueue queue;
  FakeSystemWake first;
  FakeSystemWake second;
  CombinedSystemWake both{queue, {&first, &second}};
  Told told;
  ScheduledWork token = both.observe([this] { told.emplace_back("wake"); });
};

TEST_F(SystemWakeTest, IsToldByEachOfSeveralServicesWhileSomebodyFollows) {
  first.wake();
  queue.processDueWork();
  EXPECT_EQ(told, Told{"wake"});
  second.wake();
  queue.processDueWork();
  EXPECT_EQ(told, (Told{"wake", "wake"}));
  token.reset();
  EXPECT_FALSE(first.isObserved() || second.isObserved());
}

TEST_F(SystemWakeTest, IsToldAfterTheTimersThatAreDueByThen) {
  const auto timer = queue.after(std::chrono::milliseconds(0), [this] { told.emplace_back("timer"); });
  second.wake();
  EXPECT_EQ(told, Told{});
  queue.processDueWork();
  EXPECT_EQ(told, (Told{"timer", "wake"}));
}

TEST_F(SystemWakeTest, IsToldToNobodyWhoHasGoneMeanwhile) {
  first.wake();
  token.reset();
  queue.processDueWork();
  EXPECT_EQ(told, Told{});
}

}  // namespace
}  // namespace ostrel
