#include "OstrelAgent/Onboarding/RepairFlow.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeHost.hpp"
#include "Tests/Fakes/FakeWorkspace.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

struct RepairFlowTest : testing::Test {
  void open() {
    openRepairFlow({host.bundle, host.userDefaults, workspace, host.childProcesses, host.clock, host.log},
                   startedAt);
  }

  FakeHost host;
  FakeWorkspace workspace;
  std::optional<Date> startedAt;
};

TEST_F(RepairFlowTest, StartsTheFlowUnlessOneRunsWhichComesToTheFront) {
  ASSERT_TRUE(host.userDefaults.set("OnboardingFlowProcessID", std::int64_t{77}));
  open();
  ASSERT_EQ(host.childProcesses.started.size(), 1U) << "that process has died";
  EXPECT_EQ(host.childProcesses.started[0].executable, host.bundle.executable);
  EXPECT_EQ(host.childProcesses.started[0].arguments, std::vector<std::string>{"repair"});
  workspace.running = {77};
  open();
  EXPECT_EQ(workspace.fronted, std::vector<std::int64_t>{77});
  workspace.canBringToFront = false;
  open();
  EXPECT_EQ(host.childProcesses.started.size(), 1U);
  EXPECT_EQ(host.log.lines, std::vector<std::string>{
                                "ostrel: the repair flow is running but could not be brought to the front"});
}

TEST_F(RepairFlowTest, ASecondPressStartsNoSecondFlowUnlessTheFirstHasDied) {
  open();
  host.clock.advance(2999ms);
  open();
  EXPECT_EQ(host.childProcesses.started.size(), 1U) << "its window is about to come";
  host.clock.advance(1ms);
  open();
  EXPECT_EQ(host.childProcesses.started.size(), 2U) << "it ended without one";
  host.clock.advance(-24h);
  open();
  EXPECT_EQ(host.childProcesses.started.size(), 3U) << "the clock was set back";
  host.childProcesses.startResult = std::unexpected(PlatformError{posixErrorDomain, EAGAIN, "busy"});
  host.clock.advance(3s);
  open();
  host.childProcesses.startResult = {};
  ASSERT_TRUE(host.userDefaults.set("OnboardingFlowProcessID", std::string("77")));
  open();
  EXPECT_EQ(host.childProcesses.started.size(), 4U + 1U) << "nothing was started, and nothing shows";
}

TEST_F(RepairFlowTest, AFailedStartIsLoggedWithItsReason) {
  host.childProcesses.startResult = std::unexpected(PlatformError{posixErrorDomain, EACCES, "denied"});
  open();
  host.bundle.executable.clear();
  open();
  EXPECT_EQ(host.log.lines, (std::vector<std::string>{
                                "ostrel: could not open the repair flow: denied",
                                "ostrel: cannot open the repair flow: the app executable path is unknown"}));
}

}  // namespace
}  // namespace ostrel
