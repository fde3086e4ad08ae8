#include "OstrelAgent/Containers/ContainersPage.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using Detected = ContainerTrustReading::Detected;

constexpr const char* pem = "-----BEGIN CERTIFICATE-----\nMII\n-----END CERTIFICATE-----\n";

/// The page with that runtime selected.
ContainersPage page(const std::string& selected, const std::vector<std::string>& blocked = {},
                    const Detected& detected = {}) {
  ContainersPage page;
  page.hasReading = true;
  page.selected = selected;
  page.reading = ContainerTrustReading(ContainerBlock{blocked, std::nullopt}, detected);
  return page;
}

TEST(ContainersPage, SaysWhatCanBeDoneAboutARuntime) {
  const Detected shared = {{}, {}, {"Docker"}, true, pem};
  const Detected notShared = {{}, {}, {}, false, std::nullopt};
  const auto state = [](const ContainersPage& shown) { return shown.content().detail->state; };
  const std::string pulls = "The runtime trusts the device certificate; containers inside it don't yet.";
  const std::string rejected = " A container in it rejected the device certificate recently.";
  const std::string hint = " Started by minikube, Podman machine, Multipass or CRC: use that tool's row.";
  const std::string guest = "The guest system is yours to configure; the ";
  const std::string noBundle = guest + "bundle could not be read to build a command for it.";
  EXPECT_EQ(state(page("Docker")),
            pulls + " To mount the bundle, add its folder under Settings › Resources › File sharing.");
  EXPECT_EQ(state(page("Docker", {"Docker"}, shared)),
            pulls +
                " Its file sharing covers the bundle's folder. Restart it to pick up the device "
                "certificate." +
                rejected);
  EXPECT_EQ(state(page("Docker", {}, notShared)),
            pulls +
                " Its file sharing does not cover the bundle's folder yet: add it under Settings › "
                "Resources › File sharing, or the mount below fails.");
  EXPECT_EQ(state(page("OrbStack", {}, notShared)), pulls);
  EXPECT_EQ(state(page("QEMU")), noBundle + hint);
  EXPECT_EQ(state(page("vfkit", {"vfkit"}, shared)),
            guest + "command below is pasted inside it." + hint + rejected);
  EXPECT_EQ(state(page("UTM")), noBundle);
  EXPECT_TRUE(state(page("Podman")).starts_with("Its VM keeps its own store;"));
  EXPECT_TRUE(state(page("minikube")).starts_with("Copies certificates from ~/.minikube/certs"));
  EXPECT_TRUE(state(page("Apple Container")).starts_with("Runs containers on this Mac"));
}

TEST(ContainersPage, ListsEachRuntimeInOneSection) {
  const Detected detected = {{"Podman", "Docker"}, {"UTM"}, {"Docker"}, std::nullopt, std::nullopt};
  std::string text;
  for (const auto& section : page("UTM", {"Docker", "Colima"}, detected).content().sections) {
    text += section.caption + ":";
    for (const auto& row : section.rows) {
      text += ' ' + row.name + (row.isSelected ? "*" : "");
      for (const auto& chip : row.chips) text += " [" + chip.text + "]";
    }
    text += '\n';
  }
  EXPECT_EQ(text,
            "Blocked: Docker [blocked] [restart] [running] Colima [blocked]\n"
            "Installed: Podman [running] UTM* [installed]\n"
            "Not installed: OrbStack Rancher Desktop Lima Multipass minikube vfkit QEMU Parallels "
            "VMware Fusion VirtualBox Apple Container\n");
}

TEST(ContainersPage, OffersTheCommandsThatARuntimeHas) {
  const Detected withBundle = {{}, {}, {}, std::nullopt, pem};
  for (const auto& runtime : ContainerRuntime::table) {
    const auto shown = page(std::string(runtime.name), {}, withBundle);
    const bool isGuest = runtime.trust == ContainerRuntime::Trust::guestOwned;
    EXPECT_EQ(shown.content().detail->guest.has_value(), isGuest) << runtime.name;
    EXPECT_EQ(shown.textToCopy(ContainersCopy::setupCommand), runtime.vmSetupCommand()) << runtime.name;
    EXPECT_EQ(shown.textToCopy(ContainersCopy::guestCommand).has_value(), isGuest) << runtime.name;
  }
  EXPECT_EQ(page("UTM", {}, withBundle).content().detail->guest->shown,
            ContainerRuntime::guestCommandPreview(pem));
  EXPECT_FALSE(page("UTM").content().detail->guest);
  EXPECT_EQ(page("Kata").content().noSelection, "Select a runtime");
}

}  // namespace
}  // namespace ostrel
