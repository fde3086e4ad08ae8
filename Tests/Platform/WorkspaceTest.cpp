#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>

#include "Platform/Linux/LinuxBundle.hpp"
#include "Platform/Linux/LinuxWorkspace.hpp"
#include "Platform/Posix/FrontSignal.hpp"
#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

TEST(LinuxWorkspace, KnowsOnlyRunningProcessesOfItsOwnProgram) {
  const TemporaryFolder place;
  const auto program = place / "program";
  std::filesystem::copy_file("/bin/sleep", program);
  LinuxWorkspace workspace(program);
  Process other({program, "60"}, {});
  EXPECT_TRUE(becomesTrue([&] { return workspace.isRunning(other.number()); }));
  std::filesystem::remove(program);
  EXPECT_TRUE(workspace.isRunning(other.number())) << "an upgrade has replaced its file";
  EXPECT_TRUE(workspace.bringToFront(other.number()));
  EXPECT_EQ(other.end(), -SIGUSR1) << "this program does not handle the signal";
  for (const std::int64_t stranger : {std::int64_t{other.number()}, std::int64_t{::getppid()},
                                      std::int64_t{0}, std::int64_t{-1}, std::int64_t{1} << 40}) {
    EXPECT_FALSE(workspace.isRunning(stranger)) << stranger;
    EXPECT_FALSE(workspace.bringToFront(stranger)) << stranger;
  }
  EXPECT_FALSE(LinuxWorkspace(currentExecutablePath()).isRunning(::getpid()))
      << "the process itself is not another one";
}

TEST(FrontSignal, IsDeliveredByTheMainQueueOncePerTurn) {
  PosixMainQueue queue;
  const auto isReadable = [&queue] {
    pollfd watched{queue.descriptor(), POLLIN, 0};
    return ::poll(&watched, 1, 0) == 1;
  };
  int count = 0;
  {
    const FrontSignal signal(queue, [&count] { ++count; });
    for (const int expected : {1, 2}) {
      EXPECT_TRUE(FrontSignal::send(::getpid()));
      EXPECT_TRUE(FrontSignal::send(::getpid()));
      EXPECT_TRUE(isReadable());
      queue.processDueWork();
      EXPECT_EQ(count, expected);
      EXPECT_FALSE(isReadable());
    }
    ::raise(SIGUSR1);
  }
  queue.processDueWork();
  EXPECT_FALSE(isReadable());
  EXPECT_EQ(count, 2) << "a pending signal is dropped on destruction";
}

}  // namespace
}  // namespace ostrel
