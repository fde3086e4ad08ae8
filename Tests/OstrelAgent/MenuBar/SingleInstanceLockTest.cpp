#include "OstrelAgent/MenuBar/SingleInstanceLock.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

TEST(SingleInstanceLock, BelongsToTheFirstUntilItExitsAndNeverPreventsTheIcon) {
  FakeHost host;
  auto& instance = host.menuBarInstance;
  const auto claim = [&] { return claimMenuBar(instance, host.standardStreams, host.log); };
  auto first = claim();
  ASSERT_TRUE(first && *first);
  EXPECT_EQ(instance.timeouts.back(), std::chrono::seconds(3)) << "an earlier agent may be ending";
  EXPECT_EQ(host.standardStreams.error, "");
  EXPECT_FALSE(claim());
  EXPECT_EQ(host.standardStreams.error, "the menu-bar agent is running already\n");
  first.reset();
  EXPECT_TRUE(claim());
  EXPECT_TRUE(host.log.lines.empty());
  instance.error = PlatformError{posixErrorDomain, 28, "No space left on device"};
  const auto unclaimed = claim();
  ASSERT_TRUE(unclaimed);
  EXPECT_EQ(*unclaimed, nullptr);
  EXPECT_EQ(host.log.lines.size(), 1U);
  EXPECT_TRUE(host.log.lines.back().ends_with("No space left on device")) << host.log.lines.back();
}

}  // namespace
}  // namespace ostrel
