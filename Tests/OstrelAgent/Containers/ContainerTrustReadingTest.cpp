#include "OstrelAgent/Containers/ContainerTrustReading.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using Strings = std::vector<std::string>;

/// Each row as its name and marks: b(locked), r(unning), i(nstalled), ! (restart).
Strings describe(const ContainerTrustReading& reading) {
  Strings rows;
  for (const auto& row : reading.rows) {
    rows.push_back(std::string(row.runtime.name) + " " + (row.blocked ? "b" : "") + (row.running ? "r" : "") +
                   (row.installed ? "i" : "") + (row.needsRestart ? "!" : ""));
  }
  return rows;
}

TEST(ContainerTrustReading, PutsBlockedRunningAndInstalledRuntimesFirst) {
  const ContainerTrustReading reading(
      ContainerBlock{{"Apple Container", "UTM", "Colima"}, std::nullopt},
      {{"UTM", "VirtualBox", "Docker"}, {"Parallels", "Lima", "VirtualBox"}, {"Docker"}, {}, {}});
  EXPECT_EQ(describe(reading),
            (Strings{"UTM bri", "Colima b", "Apple Container b", "Docker ri!", "VirtualBox ri", "Lima i",
                     "Parallels i", "OrbStack ", "Rancher Desktop ", "Podman ", "Multipass ", "minikube ",
                     "vfkit ", "QEMU ", "VMware Fusion "}));
}

TEST(ContainerTrustReading, KeepsABlockInAnUnknownRuntimeWithoutARow) {
  const ContainerTrustReading reading(ContainerBlock{{"Kata", "podman"}, std::nullopt}, {});
  EXPECT_EQ(reading.block->text(), "Blocked in Kata and podman");
  EXPECT_EQ(reading.rows, ContainerTrustReading().rows);
}

}  // namespace
}  // namespace ostrel
