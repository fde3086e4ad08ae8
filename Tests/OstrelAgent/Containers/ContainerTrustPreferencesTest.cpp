#include "OstrelAgent/Containers/ContainerTrustPreferences.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeUserDefaults.hpp"

namespace ostrel {
namespace {

using Stored = std::vector<std::string>;

constexpr const char* key = "ContainerBlockNotifyRuntimes";

TEST(ContainerTrustPreferences, StoresTheNamesSortedAndReportsEachThatIsSwitchedOn) {
  FakeUserDefaults defaults;
  ContainerTrustPreferences preferences(defaults);
  int enabled = 0;
  preferences.onEnable = [&enabled] { ++enabled; };
  for (const auto* name : {"Podman", "vfkit", "Docker", "Docker"}) {
    EXPECT_TRUE(preferences.setNotify(name, true));
  }
  EXPECT_EQ(defaults.get<Stored>(key), (Stored{"Docker", "Podman", "vfkit"}));
  EXPECT_TRUE(preferences.setNotify("vfkit", false));
  EXPECT_EQ(defaults.get<Stored>(key), (Stored{"Docker", "Podman"}));
  EXPECT_EQ(enabled, 4);
}

TEST(ContainerTrustPreferences, AWholeChoiceIsStoredOnceAndReportedOnceUnlessItIsTheStoredOne) {
  FakeUserDefaults defaults;
  ContainerTrustPreferences preferences(defaults);
  int enabled = 0;
  preferences.onEnable = [&enabled] { ++enabled; };
  EXPECT_TRUE(preferences.setAll({}));
  EXPECT_EQ(defaults.value(key), std::nullopt);
  for (int again = 0; again < 2; ++again) EXPECT_TRUE(preferences.setAll({"Podman", "Docker"}));
  EXPECT_EQ(defaults.get<Stored>(key), (Stored{"Docker", "Podman"}));
  EXPECT_EQ(enabled, 1);
  defaults.writeError = PlatformError{"POSIX", 28, "full"};
  EXPECT_FALSE(preferences.setAll({"Docker"}));
  EXPECT_EQ(enabled, 1);
  defaults.writeError.reset();
  EXPECT_TRUE(preferences.setAll({}));
  EXPECT_EQ(defaults.get<Stored>(key), Stored());
  EXPECT_EQ(enabled, 1);
}

TEST(ContainerTrustPreferences, KeepsUnknownNamesAndReplacesAValueOfAnotherType) {
  FakeUserDefaults defaults;
  ContainerTrustPreferences preferences(defaults);
  (void)defaults.set(key, Stored{"Later Runtime", "Docker"});
  EXPECT_TRUE(preferences.setNotify("Colima", true));
  EXPECT_EQ(defaults.get<Stored>(key), (Stored{"Colima", "Docker", "Later Runtime"}));
  (void)defaults.set(key, std::string("Docker"));
  EXPECT_TRUE(preferences.setNotify("Podman", true));
  EXPECT_EQ(defaults.get<Stored>(key), Stored{"Podman"});
}

}  // namespace
}  // namespace ostrel
