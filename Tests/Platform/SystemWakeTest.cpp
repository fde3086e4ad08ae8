#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Platform/Linux/CombinedSystemWake.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"
#include "Tests/Fakes/FakeSystemWake.hpp"

namespace ostrel {
namespace {

using Events = std::vector<std::string>;

struct SystemWakeTest : testing::Test {
  PosixMainQueue queue;
  FakeSystemWake first;
  FakeSystemWake second;
  CombinedSystemWake both{queue, {&first, &second}};
  Events events;
  ScheduledWork token = both.observe([this] { events.emplace_back("wake"); });
};

TEST_F(SystemWakeTest, IsReportedByEachOfSeveralServicesWhileObserved) {
  first.wake();
  queue.processDueWork();
  EXPECT_EQ(events, Events{"wake"});
  second.wake();
  queue.processDueWork();
  EXPECT_EQ(events, (Events{"wake", "wake"}));
  token.reset();
  EXPECT_FALSE(first.isObserved() || second.isObserved());
}

TEST_F(SystemWakeTest, IsReportedAfterTheTimersThatAreDue) {
  const auto timer = queue.after(std::chrono::milliseconds(0), [this] { events.emplace_back("timer"); });
  second.wake();
  EXPECT_EQ(events, Events{});
  queue.processDueWork();
  EXPECT_EQ(events, (Events{"timer", "wake"}));
}

TEST_F(SystemWakeTest, IsNotReportedToADestroyedObserver) {
  first.wake();
  token.reset();
  queue.processDueWork();
  EXPECT_EQ(events, Events{});
}

}  // namespace
}  // namespace ostrel
