#include "OstrelAgent/Containers/ContainerBlock.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using builders::health;

TEST(ContainerBlock, NamesTheRuntimesInWhichADownloadWasBlocked) {
  auto blocked = health("broken", "yellow", "CONTAINER_REJECTED_LEAF", {"Podman", "", "Colima"});
  blocked.expectedClearBy = builders::now;
  EXPECT_EQ(ContainerBlock::read(blocked), (ContainerBlock{{"Podman", "Colima"}, builders::now}));
  EXPECT_EQ(ContainerBlock::read(health("broken", "", "CONTAINER_REJECTED_LEAF", {"", ""})), std::nullopt);
  EXPECT_EQ(ContainerBlock::read(health("broken", "", "APP_REJECTED_LEAF", {"Podman"})), std::nullopt);
}

}  // namespace
}  // namespace ostrel
