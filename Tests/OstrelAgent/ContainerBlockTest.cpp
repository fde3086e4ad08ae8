#include "OstrelAgent/ContainerBlock.hpp"

#include <gtest/gtest.h>

#include "Tests/OstrelAgent/Readings.hpp"

namespace ostrel {
namespace {

using readings::health;

TEST(ContainerBlock, NamesTheRuntimesInWhichADownloadWasBlocked) {
  auto blocked = health("broken", "yellow", "CONTAINER_REJECTED_LEAF", {"Podman", "", "Colima"});
  blocked.expectedClearBy = readings::now;
  const auto block = ContainerBlock::read(blocked);
  EXPECT_EQ(block, (ContainerBlock{{"Podman", "Colima"}, readings::now}));
  EXPECT_EQ(block->text(), "Blocked in Podman and Colima");
  EXPECT_EQ(ContainerBlock::read(health("broken", "", "CONTAINER_REJECTED_LEAF", {"", ""})), std::nullopt);
  EXPECT_EQ(ContainerBlock::read(health("broken", "", "APP_REJECTED_LEAF", {"Podman"})), std::nullopt);
}

TEST(ContainerBlock, ComesBeforeRunningRuntimesWhichAreNeverOk) {
  auto snapshot = readings::healthy();
  EXPECT_EQ(containersState(snapshot, {}), RowState::info("none running"));
  EXPECT_EQ(containersState(snapshot, {"Colima", "Podman"}), RowState::info("Colima and Podman running"));
  const std::pair<const char*, RowState> rows[] = {{"red", RowState::bad("Blocked in Lima")},
                                                   {"yellow", RowState::warn("Blocked in Lima")},
                                                   {"info", RowState::off("Blocked in Lima")},
                                                   {"", RowState::bad("Blocked in Lima")}};
  for (const auto& [severity, state] : rows) {
    snapshot.runtimeTrust = health("ok", severity, "CONTAINER_REJECTED_LEAF", {"Lima"});
    EXPECT_EQ(containersState(snapshot, {"Colima"}), state) << severity;
  }
}

}  // namespace
}  // namespace ostrel
