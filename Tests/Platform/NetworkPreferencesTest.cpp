#include <gtest/gtest.h>

#include <cerrno>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SimulatedNetworkPreferences.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeNetworkPreferences.hpp"

namespace ostrel {
namespace {

using Proxies = NetworkPreferences::TransparentProxies;
using Filter = NetworkPreferences::ContentFilter;

Proxies proxiesOf(NetworkPreferences& preferences) {
  Proxies given = std::unexpected(PlatformError{"no completion", 0, ""});
  preferences.loadTransparentProxies([&given](Proxies proxies) { given = std::move(proxies); });
  return given;
}

Filter filterOf(NetworkPreferences& preferences) {
  Filter given = std::unexpected(PlatformError{"no completion", 0, ""});
  preferences.loadContentFilter([&given](Filter filter) { given = std::move(filter); });
  return given;
}

struct NetworkPreferencesTest : testing::Test {
  FakeFiles files;
  SimulatedNetworkPreferences preferences{files};
};

TEST_F(NetworkPreferencesTest, WithoutFilesNothingIsConfiguredOnTheFakeToo) {
  FakeNetworkPreferences fake;
  for (NetworkPreferences* each :
       {static_cast<NetworkPreferences*>(&preferences), static_cast<NetworkPreferences*>(&fake)}) {
    EXPECT_EQ(proxiesOf(*each), Proxies());
    EXPECT_EQ(filterOf(*each), Filter());
  }
}

TEST_F(NetworkPreferencesTest, TellsWhatTheFilesTell) {
  files.put(simulatedstate::transparentProxies,
            R"([{"enabled":true,"connected":false},{"connected":true,"enabled":false,"name":"x"}])");
  files.put(simulatedstate::contentFilter, R"({"provider":true,"enabled":false})");
  EXPECT_EQ(proxiesOf(preferences),
            (std::vector<TransparentProxyConfiguration>{{true, false, "place 0"}, {false, true, "place 1"}}));
  EXPECT_EQ(filterOf(preferences), (ContentFilterConfiguration{true, false}));
}

TEST_F(NetworkPreferencesTest, DamagedFilesAreErrorsOfTheirOwnDomains) {
  const std::string rows[] = {
      "",
      "null",
      "[7]",
      R"([{"enabled":1,"connected":true}])",
      R"({"provider":true})",
      R"({"provider":"yes","enabled":true})",
      "\xff",
      std::string(100000, '['),
  };
  for (const auto& bytes : rows) {
    files.put(simulatedstate::transparentProxies, bytes);
    files.put(simulatedstate::contentFilter, bytes);
    const auto proxies = proxiesOf(preferences);
    const auto filter = filterOf(preferences);
    ASSERT_TRUE(!proxies && !filter) << bytes.substr(0, 40);
    EXPECT_EQ(proxies.error().domain, "NEVPNErrorDomain");
    EXPECT_EQ(proxies.error().code, 5);
    EXPECT_EQ(filter.error().domain, "NEFilterErrorDomain");
    EXPECT_EQ(filter.error().code, 3);
  }
  files.readError = PlatformError{posixErrorDomain, EACCES, "denied"};
  EXPECT_EQ(proxiesOf(preferences).error(), (PlatformError{"NEVPNErrorDomain", 5, "denied"}));
  EXPECT_EQ(filterOf(preferences).error(), (PlatformError{"NEFilterErrorDomain", 3, "denied"}));
}

}  // namespace
}  // namespace ostrel
