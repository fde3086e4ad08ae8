#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

#include "Platform/Posix/FileLock.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SimulatedNetworkPreferences.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeNetworkPreferences.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

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

using Saved = std::expected<TransparentProxyConfiguration, PlatformError>;

Saved save(NetworkPreferences& preferences, const TransparentProxyConfiguration& configuration) {
  Saved given = std::unexpected(PlatformError{"no completion", 0, ""});
  preferences.saveTransparentProxy(configuration, [&given](Saved saved) { given = std::move(saved); });
  return given;
}

NetworkPreferences::Done start(NetworkPreferences& preferences, const std::string& identifier) {
  NetworkPreferences::Done given = std::unexpected(PlatformError{"no completion", 0, ""});
  preferences.startTransparentProxy(identifier, [&given](auto done) { given = std::move(done); });
  return given;
}

struct NetworkPreferencesTest : testing::Test {
  TemporaryFolder place;
  FakeFiles files;
  SimulatedNetworkPreferences preferences{files, place / "lock"};
};

TEST_F(NetworkPreferencesTest, NothingIsConfiguredWithoutFilesNorOnTheFake) {
  FakeNetworkPreferences fake;
  for (NetworkPreferences* each :
       {static_cast<NetworkPreferences*>(&preferences), static_cast<NetworkPreferences*>(&fake)}) {
    EXPECT_EQ(proxiesOf(*each), Proxies());
    EXPECT_EQ(filterOf(*each), Filter());
  }
}

TEST_F(NetworkPreferencesTest, GivesTheConfigurationsOfItsFiles) {
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
  EXPECT_EQ(proxiesOf(preferences).error(), TransparentProxiesError({"NEVPNErrorDomain", 5, "denied"}));
  EXPECT_EQ(filterOf(preferences).error(), (PlatformError{"NEFilterErrorDomain", 3, "denied"}));
}

TEST_F(NetworkPreferencesTest, SavesEverythingOfAConfigurationButItsConnection) {
  TransparentProxyConfiguration configuration{.enabled = true,
                                              .connected = true,
                                              .providerBundleIdentifier = "provider",
                                              .serverAddress = "server",
                                              .providerConfiguration = R"({"hosts":["a"]})",
                                              .localizedDescription = "Ostrel \xe2\x80\x94",
                                              .onDemandRules = {OnDemandRule()},
                                              .onDemandEnabled = true};
  auto saved = save(preferences, configuration).value();
  configuration.identifier = saved.identifier;
  configuration.connected = false;
  EXPECT_EQ(saved, configuration);
  EXPECT_TRUE(start(preferences, saved.identifier));
  configuration.connected = true;
  EXPECT_EQ(proxiesOf(preferences), Proxies({configuration}));
  EXPECT_EQ(save(preferences, saved), configuration);
  configuration.enabled = configuration.connected = false;
  EXPECT_EQ(save(preferences, configuration), configuration);
  EXPECT_EQ(start(preferences, saved.identifier).error().code, 2);
}

TEST_F(NetworkPreferencesTest, ARemovedConfigurationIsStaleForEveryCall) {
  const auto saved = save(preferences, {.enabled = true}).value();
  const auto other = save(preferences, {.enabled = true}).value();
  EXPECT_NE(saved.identifier, other.identifier);
  preferences.removeTransparentProxy(saved.identifier, [](auto done) { EXPECT_TRUE(done); });
  const PlatformError stale{"NEVPNErrorDomain", 4, "The configuration is stale."};
  EXPECT_EQ(save(preferences, saved).error(), stale);
  EXPECT_EQ(start(preferences, saved.identifier).error(), stale);
  preferences.removeTransparentProxy(saved.identifier, [&](auto done) { EXPECT_EQ(done.error(), stale); });
  EXPECT_EQ(proxiesOf(preferences), Proxies({other}));
}

TEST_F(NetworkPreferencesTest, FailsAsOftenAsOverriddenAcrossInstances) {
  files.put(simulatedstate::overrides,
            R"({"fail-saves": {"count": 2, "domain": "NEVPNErrorDomain", "code": 4, "description": "x"},
                "fail-filter-saves": {"count": 1, "domain": "D", "code": -7}, "trust": "cancel"})");
  SimulatedNetworkPreferences another(files, place / "lock");
  EXPECT_EQ(save(preferences, {}).error(), (PlatformError{"NEVPNErrorDomain", 4, "x"}));
  EXPECT_FALSE(save(another, {}));
  EXPECT_TRUE(save(preferences, {}));
  preferences.saveContentFilter({}, [](auto done) {
    EXPECT_EQ(done.error(), (PlatformError{"D", -7, "The operation couldn't be completed. (D error -7.)"}));
  });
  EXPECT_EQ(files.files.at(simulatedstate::overrides).bytes, "{\n  \"trust\": \"cancel\"\n}\n");
  for (const auto* damaged : {"", "[]", R"({"fail-saves": 3})", R"({"fail-saves": {"count": "3"}})"}) {
    files.put(simulatedstate::overrides, damaged);
    EXPECT_TRUE(save(preferences, {})) << damaged;
  }
}

TEST(FileLock, ATimeoutIsAnError) {
  const TemporaryFolder place;
  {
    const auto held = FileLock::take(place / "folder/lock");
    ASSERT_TRUE(held);
    EXPECT_EQ(FileLock::take(place / "folder/lock", std::chrono::milliseconds(10)).error().code, ETIMEDOUT);
  }
  EXPECT_TRUE(FileLock::take(place / "folder/lock"));
  place.write("file", "");
  EXPECT_EQ(FileLock::take(place / "file/lock").error().code, ENOTDIR);
}

TEST(FileLock, ChangesOfManyThreadsAreAllKept) {
  const TemporaryFolder place;
  PosixFiles files([&](std::string_view path) { return place / "root" + std::string(path); });
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      SimulatedNetworkPreferences preferences(files, place / "root/lock");
      for (int change = 0; change < 10; ++change) EXPECT_TRUE(save(preferences, {}));
    });
  }
  for (auto& thread : threads) thread.join();
  SimulatedNetworkPreferences preferences(files, place / "root/lock");
  EXPECT_EQ(proxiesOf(preferences).value().size(), 40U);
}

}  // namespace
}  // namespace ostrel
