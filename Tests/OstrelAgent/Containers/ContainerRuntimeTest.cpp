#include "OstrelAgent/Containers/ContainerRuntime.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeWorkspace.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

using Strings = std::set<std::string>;

constexpr Date early = Date() + 1h;
constexpr Date late = Date() + 2h;

TEST(ContainerRuntime, RunsSinceItsEarliestKnownLaunch) {
  EXPECT_EQ(ContainerRuntime::running({{"com.docker.docker", late},
                                       {"com.docker.helper", early},
                                       {"com.docker.extension", std::nullopt},
                                       {"com.docker.other", late},
                                       {std::nullopt, early}},
                                      {"com.docker.backend", "vpnkit"}),
            (RunningRuntimes{{"Docker", early}}));
  EXPECT_EQ(
      ContainerRuntime::running({{"com.utmapp.UTM", std::nullopt}, {"com.utmapp.UTM", late}}, {"limactl"}),
      (RunningRuntimes{{"UTM", late}, {"Lima", std::nullopt}}));
}

TEST(ContainerRuntime, RunsWhenAnIdentifierOrACommandNameStartsWithItsPrefix) {
  EXPECT_EQ(ContainerRuntime::running({{"dev.kdrag0n.MacVirt", late},
                                       {"com.vmware.fusion2", late},
                                       {"com.parallels", late},
                                       {"com.dockerx.docker", late},
                                       {"Com.Docker.docker", late}},
                                      {"gvproxy", "qemu-system-aarc", "vboxheadless", "my-colima", "docker"}),
            (RunningRuntimes{{"OrbStack", late}, {"VMware Fusion", late}, {"Podman", {}}, {"QEMU", {}}}));
  const RunningRuntimes appleContainer = {{"Apple Container", std::nullopt}};
  EXPECT_EQ(ContainerRuntime::running({}, {"container-apiser"}), appleContainer);
  EXPECT_EQ(ContainerRuntime::running({}, {"container-core-i"}), appleContainer);
  EXPECT_EQ(ContainerRuntime::running({}, {"container-networ"}), RunningRuntimes());
}

TEST(ContainerRuntime, IsInstalledByItsApplicationOrAProgram) {
  FakeWorkspace workspace;
  workspace.installed = {"com.docker",  "com.canonical.multipass.gui", "com.vmware.fusion",
                         "com.utmapp.", "dev.kdrag0n.MacVirt",         "com.parallels.desktop.console"};
  EXPECT_EQ(ContainerRuntime::installed(workspace, FakeFiles()),
            (Strings{"OrbStack", "Parallels", "UTM", "VMware Fusion"}));
  FakeFiles files;
  for (const auto* program : {"/opt/homebrew/bin/colima", "/usr/local/bin/podman",
                              "/usr/bin/qemu-system-x86_64", "/bin/minikube", "/usr/local/bin/docker"}) {
    files.put(program, "program");
  }
  (void)files.makeFolders("/usr/local/bin/vfkit");
  EXPECT_EQ(ContainerRuntime::installed(FakeWorkspace(), files), (Strings{"Colima", "Podman", "QEMU"}));
}

TEST(ContainerRuntime, NeedsARestartOnlyWhenItReadTheKeychainBeforeTheCertificate) {
  const RunningRuntimes running = {{"Docker", late},
                                   {"OrbStack", late - 1s},
                                   {"Rancher Desktop", std::nullopt},
                                   {"Multipass", early},
                                   {"Renamed", early}};
  EXPECT_EQ(ContainerRuntime::needingRestart(running, late), Strings{"OrbStack"});
  EXPECT_EQ(ContainerRuntime::needingRestart(running, std::nullopt), Strings());
}

}  // namespace
}  // namespace ostrel
