#include "OstrelAgent/MenuBar/CheckInNudges.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

using Reasons = std::vector<std::string>;
using Proxy = Snapshot::TransparentProxy;

/// The snapshot of an enrolled Mac.
Snapshot enrolled(bool sysext = false, bool lock = false, std::optional<Proxy> proxy = std::nullopt) {
  Snapshot snapshot;
  snapshot.enrolled = true;
  snapshot.sysextActive = sysext;
  snapshot.egressLockEnabled = lock;
  snapshot.transparentProxy = proxy;
  return snapshot;
}

/// Nudges of an enrolled Mac whose network is up and known.
struct CheckInNudgesTest : testing::Test {
  CheckInNudgesTest() {
    nudges->start();
    take(enrolled());
    host.networkPath.update(true, {"en0"});
  }

  void take(const Snapshot& snapshot) {
    nudges->setEnrolled(snapshot.enrolled);
    nudges->nudgeOnNetworkExtensionChange(NetworkExtensionState::of(snapshot));
  }

  void joinAnother() { host.networkPath.update(true, {"en" + std::to_string(++joined)}); }

  FakeHost host;
  Reasons reasons;
  int joined = 0;
  std::unique_ptr<CheckInNudges> nudges = std::make_unique<CheckInNudges>(
      CheckInNudges::Services{host.mainQueue, host.clock, host.networkPath, host.systemWake},
      [this](const std::string& reason) { reasons.push_back(reason); });
};

TEST_F(CheckInNudgesTest, TheFirstPathNeverNudges) {
  for (const bool isSatisfied : {false, true}) {
    nudges = std::make_unique<CheckInNudges>(
        CheckInNudges::Services{host.mainQueue, host.clock, host.networkPath, host.systemWake},
        [this](const std::string& reason) { reasons.push_back(reason); });
    nudges->start();
    take(enrolled());
    host.networkPath.update(isSatisfied, {"en0"});
    host.mainQueue.advance(1min);
    EXPECT_EQ(reasons, Reasons{}) << isSatisfied;
  }
  host.networkPath.update(false);
  host.networkPath.update(true, {"en0"});
  host.mainQueue.advance(10s);
  EXPECT_EQ(reasons, Reasons{"network"}) << "the network is back";
}

TEST_F(CheckInNudgesTest, OnlyAnotherSetOfRoutableInterfacesIsAChange) {
  struct Row {
    bool isSatisfied;
    std::vector<std::string> interfaces;
    bool nudges;
  };
  const Row rows[] = {
      {true, {"en0"}, false},
      {true, {"utun3", "en0", "awdl0", "llw0", "bridge100", "vmenet0", "ap1", "ipsec0"}, false},
      {false, {}, false},
      {true, {"en0"}, true},
      {true, {"en1", "en0"}, true},
      {true, {"en0", "en1", "en0"}, false},
      {true, {}, true},
      {true, {"utun0"}, false},
  };
  for (const auto& row : rows) {
    reasons.clear();
    host.networkPath.update(row.isSatisfied, row.interfaces);
    host.mainQueue.advance(70s);
    EXPECT_EQ(!reasons.empty(), row.nudges) << &row - rows;
  }
}

TEST_F(CheckInNudgesTest, ABurstGivesOneNudgeTenSecondsAfterItsLatestEvent) {
  host.systemWake.wake();
  for (int change = 0; change < 3; ++change) {
    host.mainQueue.advance(2s);
    joinAnother();
  }
  host.mainQueue.advance(9999ms);
  EXPECT_EQ(reasons, Reasons{});
  host.mainQueue.advance(1ms);
  EXPECT_EQ(reasons, Reasons{"wake"});
  host.mainQueue.advance(1min);
  joinAnother();
  host.mainQueue.advance(10s);
  EXPECT_EQ(reasons, (Reasons{"wake", "network"})) << "the wake is reported once";
  host.mainQueue.advance(1min);
  for (int change = 0; change < 1000; ++change) joinAnother();
  host.mainQueue.advance(10min);
  EXPECT_EQ(reasons, (Reasons{"wake", "network", "network"})) << "a thousand changes";
}

TEST_F(CheckInNudgesTest, EventsWithoutAPauseNudgeAfterThirtySeconds) {
  for (int seconds = 0; seconds < 30; seconds += 5) {
    joinAnother();
    EXPECT_EQ(reasons, Reasons{}) << seconds;
    host.mainQueue.advance(5s);
  }
  EXPECT_EQ(reasons, Reasons{"network"}) << "at the time of the seventh event, before it";
  joinAnother();
  host.mainQueue.advance(1min);
  EXPECT_EQ(reasons.size(), 1U);
}

TEST_F(CheckInNudgesTest, EventsWithinAMinuteOfANudgeAreDropped) {
  joinAnother();
  host.mainQueue.advance(10s);
  ASSERT_EQ(reasons.size(), 1U);
  host.mainQueue.advance(59999ms);
  host.systemWake.wake();
  host.mainQueue.advance(30s);
  EXPECT_EQ(reasons.size(), 1U);
  host.clock.advance(-1h);
  host.systemWake.wake();
  host.mainQueue.advance(30s);
  EXPECT_EQ(reasons.size(), 1U) << "a clock that was set back";
  host.clock.advance(1h);
  joinAnother();
  host.mainQueue.advance(10s);
  EXPECT_EQ(reasons, (Reasons{"network", "network"}));
}

TEST_F(CheckInNudgesTest, ABurstEndsInTimeWhenTheClockIsSet) {
  for (const auto shift : {-24h, 24h}) {
    reasons.clear();
    host.mainQueue.advance(1min);
    host.systemWake.wake();
    host.clock.advance(shift);
    for (int event = 0; event < 8; ++event) {
      host.mainQueue.advance(5s);
      joinAnother();
    }
    EXPECT_EQ(reasons, Reasons{"wake"}) << shift.count();
    host.clock.advance(-shift);
  }
}

TEST_F(CheckInNudgesTest, ABurstWithoutNetworkOrEnrolmentMayBeRetriedAtOnce) {
  host.systemWake.wake();
  host.networkPath.update(false);
  host.mainQueue.advance(10s);
  EXPECT_EQ(reasons, Reasons{});
  take(Snapshot());
  host.networkPath.update(true, {"en0"});
  host.mainQueue.advance(10s);
  EXPECT_EQ(reasons, Reasons{});
  take(enrolled());
  joinAnother();
  host.mainQueue.advance(10s);
  EXPECT_EQ(reasons, Reasons{"network"}) << "the wake belonged to an earlier burst";
}

TEST_F(CheckInNudgesTest, AChangeOfTheNetworkExtensionNudgesAtOnceWhileEnrolled) {
  struct Row {
    Snapshot snapshot;
    bool nudges;
  };
  Snapshot unread;
  unread.statusError = "agent status unavailable";
  unread.egressLockEnabled = true;
  const Row rows[] = {
      {enrolled(), false},
      {enrolled(true), true},
      {enrolled(true, false, Proxy{}), true},
      {enrolled(true, false, Proxy{.approved = true}), true},
      {enrolled(true, false, Proxy{.approved = true}), false},
      {unread, false},
      {enrolled(false, true), false},
      {enrolled(), true},
  };
  for (const auto& row : rows) {
    reasons.clear();
    take(row.snapshot);
    EXPECT_EQ(reasons, row.nudges ? Reasons{"network"} : Reasons{}) << &row - rows;
  }
}

TEST_F(CheckInNudgesTest, NothingIsObservedAfterDestruction) {
  host.systemWake.wake();
  nudges.reset();
  EXPECT_FALSE(host.systemWake.isObserved());
  EXPECT_FALSE(host.networkPath.isObserved());
  host.mainQueue.advance(1min);
  EXPECT_EQ(reasons, Reasons{});
}

}  // namespace
}  // namespace ostrel
