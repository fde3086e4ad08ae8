#include "Platform/SingleInstance.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <thread>

#include "Platform/Posix/PosixSingleInstance.hpp"
#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/FakeSingleInstance.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

TEST(SingleInstance, BelongsToOneClaimAtATime) {
  const TemporaryFolder place;
  FakeSingleInstance fake;
  PosixSingleInstance real(place / "some/folders/lock");
  for (SingleInstance* instance :
       {static_cast<SingleInstance*>(&fake), static_cast<SingleInstance*>(&real)}) {
    auto first = instance->claim(0ms);
    ASSERT_TRUE(first && *first);
    auto second = instance->claim(30ms);
    ASSERT_TRUE(second);
    EXPECT_EQ(*second, nullptr);
    first->reset();
    second = instance->claim(0ms);
    EXPECT_TRUE(second && *second);
  }
}

TEST(SingleInstance, WaitsForAnEarlierProcessThatEnds) {
  const TemporaryFolder place;
  auto earlier = PosixSingleInstance(place / "lock").claim(0ms);
  std::jthread end([&] {
    std::this_thread::sleep_for(100ms);
    earlier->reset();
  });
  const auto claim = PosixSingleInstance(place / "lock").claim(20s);
  EXPECT_TRUE(claim && *claim);
}

TEST(SingleInstance, IsNotKeptByAChildThatOutlivesTheProcess) {
  const TemporaryFolder place;
  PosixSingleInstance instance(place / "lock");
  auto first = instance.claim(0ms);
  Process child({"/bin/sleep", "60"}, {});
  first->reset();
  const auto second = instance.claim(0ms);
  EXPECT_TRUE(second && *second);
}

TEST(SingleInstance, AnUnusableLockFileIsAnError) {
  const TemporaryFolder place;
  place.write("file", "");
  fs::create_directories(place / "folder");
  for (const auto& path : {place / "file/lock", place / "folder", std::string("/proc/none/lock")}) {
    const auto claim = PosixSingleInstance(path).claim(20s);
    ASSERT_FALSE(claim) << path;
    EXPECT_NE(claim.error().description, "");
  }
  ASSERT_EQ(::mkfifo((place / "pipe").c_str(), 0600), 0);
  EXPECT_TRUE(PosixSingleInstance(place / "pipe").claim(0ms)) << "it neither hangs nor fails";
}

}  // namespace
}  // namespace ostrel
