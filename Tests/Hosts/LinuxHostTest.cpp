#include <gtest/gtest.h>

#include <cstdlib>
#include <latch>

#include "Platform/Host.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

struct LinuxHostDeathTest : testing::Test {
  LinuxHostDeathTest() { ::setenv("OSTREL_HOST_ROOT", folder.path().c_str(), 1); }

  TemporaryFolder folder;
};

TEST_F(LinuxHostDeathTest, ShutsDownThoughWorkIsStuckInTheBackground) {
  const auto shutDown = [](bool isStatusQueue) {
    const auto lifetime = makeHost();
    const auto& host = lifetime->services();
    (void)lifetime->openShell(ShellMode::queueOnly);
    std::latch started(1);
    std::latch never(1);
    (isStatusQueue ? host.statusQueue : host.backgroundQueue).run(QualityOfService::utility, [&] {
      started.count_down();
      never.wait();
    });
    started.wait();
    lifetime->shutDown(7);
    std::_Exit(1);
  };
  EXPECT_EXIT(shutDown(true), testing::ExitedWithCode(7), "");
  EXPECT_EXIT(shutDown(false), testing::ExitedWithCode(7), "");
}

TEST_F(LinuxHostDeathTest, ShutsDownAtOnceWhenNothingRuns) {
  const auto shutDown = [] {
    {
      const auto lifetime = makeHost();
      (void)lifetime->openShell(ShellMode::queueOnly);
      lifetime->shutDown(7);
    }
    std::_Exit(0);
  };
  EXPECT_EXIT(shutDown(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ostrel
