#include "OstrelAgent/Containers/ContainerBlock.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

using readings::health;
using readings::told;

TEST(ContainerBlock, NamesTheRuntimesInWhichADownloadWasBlocked) {
  auto blocked = health("broken", "yellow", "CONTAINER_REJECTED_LEAF", {"Podman", "", "Colima"});
  blocked.expectedClearBy = readings::now;
  EXPECT_EQ(ContainerBlock::read(blocked), (ContainerBlock{{"Podman", "Colima"}, readings::now}));
  EXPECT_EQ(ContainerBlock::read(health("broken", "", "CONTAINER_REJECTED_LEAF", {"", ""})), std::nullopt);
  EXPECT_EQ(ContainerBlock::read(health("broken", "", "APP_REJECTED_LEAF", {"Podman"})), std::nullopt);
}

TEST(ContainerBlock, ComesBeforeRunningRuntimesWhichAreNeverOk) {
  auto snapshot = readings::healthy();
  EXPECT_EQ(told(containersState(snapshot, {})), "info none running");
  EXPECT_EQ(told(containersState(snapshot, {"Colima", "Podman"})), "info Colima and Podman running");
  snapshot.runtimeTrust = health("ok", "", "CONTAINER_REJECTED_LEAF", {"Lima", "Podman"});
  EXPECT_EQ(told(containersState(snapshot, {"Colima"})), "bad Blocked in Lima and Podman");
  snapshot.runtimeTrust.severity = "info";
  EXPECT_EQ(told(containersState(snapshot, {})), "off Blocked in Lima and Podman");
}

}  // namespace
}  // namespace ostrel
