#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "SimulatedEndpoint/DeviceCertificate.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "Tests/SimulatedEndpoint/Programs.hpp"

namespace ostrel::simulated {
namespace {

TEST_F(Programs, AnEmptyHostRootIsProtectedAndStaysEmpty) {
  const auto report = Json::parse(status().output);
  EXPECT_EQ(report["health"]["verdict"], "protected");
  EXPECT_TRUE(report["checkin"]["last_success"].get<std::string>().ends_with("Z"));
  EXPECT_FALSE(std::filesystem::exists(root));
}

TEST_F(Programs, AnyOtherHelperCommandLineIsAUsageError) {
  const Arguments rows[] = {
      {},
      {"status"},
      {"status", "--json", "-v"},
      {"diagnostics", "--network-extension", "{}", "--save"},
      {"uninstall", "--removal-kind=app_deactivate", "--untrust-ca"},
  };
  for (const auto& row : rows) {
    const auto ran = run(HELPER, row);
    EXPECT_EQ(ran.status, 2) << testing::PrintToString(row);
    EXPECT_EQ(ran.output, "");
    EXPECT_TRUE(ran.error.starts_with("usage: ")) << ran.error;
  }
}

TEST_F(Programs, DiagnosticsNameNoUserAndAreSentAsTheScenarioSays) {
  control({"scenario", "trust-gap"});
  for (const auto* text : {R"({"sysext_active":true})", "", "{\"x", "\xff"}) {
    const auto output = run(HELPER, {"diagnostics", "--network-extension", text}).output;
    const auto bundle = Json::parse(output);
    if (text[0] != '\xff') {
      EXPECT_EQ(bundle["network_extension"], Json::accept(text) ? Json::parse(text) : Json(text));
    }
    EXPECT_EQ(bundle["components"]["runtime_trust"]["code"], "TRUST_KNOB_UNCOVERED");
    EXPECT_EQ(output.find("robin"), std::string::npos);
  }
  for (const auto* answer : {"sent", "retry", "error"}) {
    control({"set", "helper.send", answer});
    const auto ran = run(HELPER, {"diagnostics", "--network-extension", "{}", "--send"});
    EXPECT_EQ(Json::parse(ran.output)["sent"], answer == std::string("sent"));
  }
}

TEST_F(Programs, NetworkPreferencesFollowTheScenarioUnlessOnlyTheReportChanges) {
  const std::string savedByTheAgent = R"([{"enabled": true, "connected": true}])";
  control({"scenario", "filter-off"});
  EXPECT_EQ(state(simulatedstate::transparentProxies),
            Json::parse(R"([{"enabled": false, "connected": false}])"));
  EXPECT_EQ(state(simulatedstate::contentFilter), Json({{"provider", true}, {"enabled", true}}));
  place.write("root" + std::string(simulatedstate::transparentProxies), savedByTheAgent);
  control({"set", "report.health.verdict", "protected"});
  EXPECT_EQ(state(simulatedstate::transparentProxies), Json::parse(savedByTheAgent));
  EXPECT_EQ(Json::parse(status().output)["health"]["verdict"], "protected");
}

TEST_F(Programs, TheProfilesToolReportsDeviceManagement) {
  const auto tool = root + "/usr/bin/profiles";
  const std::pair<Arguments, const char*> rows[] = {
      {{"scenario", "managed"}, "Enrolled via DEP: No\nMDM enrollment: Yes (User Approved)\n"},
      {{"set", "mdm_enrolled", "false"}, "Enrolled via DEP: No\nMDM enrollment: No\n"},
  };
  for (const auto& [arguments, output] : rows) {
    control(arguments);
    EXPECT_EQ(run(tool, {"status", "-type", "enrollment"}).output, output);
  }
  place.write("root" + std::string(simulatedstate::deviceManagement), "{\"enrolled\": 1}");
  const auto ran = run(tool, {"status", "-type", "enrollment"});
  EXPECT_EQ(ran.status, 1);
  EXPECT_NE(ran.error.find("device-management.json"), std::string::npos) << ran.error;
}

TEST_F(Programs, ADamagedScenarioIsReportedAndReplacedByChoosingOne) {
  for (const auto* damaged : {"", "[]", R"({"report": {}, "helper": {"exti": 1}})"}) {
    place.write("root" + std::string(simulatedstate::scenario), damaged);
    for (const auto& ran : {status(), run(CONTROL, {"set", "helper.exit", "3"})}) {
      EXPECT_EQ(ran.status, 1) << damaged;
      EXPECT_EQ(ran.output, "");
      EXPECT_NE(ran.error.find("scenario.json"), std::string::npos) << ran.error;
    }
    EXPECT_EQ(place.read("root" + std::string(simulatedstate::scenario)), damaged);
    control({"scenario", "protected"});
    EXPECT_EQ(status().status, 0);
  }
}

TEST_F(Programs, NetworkAndWakeOverridesKeepTheOthersAndCanBeTakenBack) {
  control({"approval", "never"});
  control({"network", "up", "en0", "en1"});
  control({"wake"});
  const auto first = state(simulatedstate::overrides);
  EXPECT_EQ(first["network"], Json({"en0", "en1"}));
  EXPECT_EQ(first["approval"], "never");
  control({"network", "down"});
  control({"wake"});
  const auto second = state(simulatedstate::overrides);
  EXPECT_EQ(second["network"], Json::array());
  EXPECT_GT(second["wake"], first["wake"]);
  control({"network", "real"});
  EXPECT_FALSE(state(simulatedstate::overrides).contains("network"));
}

TEST_F(Programs, ApplicationsRunApartFromTheirInstallationUntilTheyAreRemoved) {
  control({"app", "install", "com.one"});
  control({"app", "start", "com.one", "--launched", "1970-01-01T00:00:05Z"});
  control({"app", "start", "com.two"});
  const auto launched = state(simulatedstate::applications)["running"][1]["launched"];
  EXPECT_GT(launched, 1'700'000'000'000);
  control({"app", "start", "com.one"});
  control({"app", "stop", "com.two"});
  auto applications = state(simulatedstate::applications);
  EXPECT_EQ(applications["installed"], Json({"com.one"}));
  EXPECT_EQ(applications["running"].size(), 2U);
  EXPECT_EQ(applications["running"][0]["launched"], 5000);
  control({"app", "remove", "com.one"});
  applications = state(simulatedstate::applications);
  EXPECT_EQ(applications["installed"], Json::array());
  EXPECT_EQ(applications["running"], Json::array());
}

TEST_F(Programs, ProcessesStartedAtOnceAreAllKept) {
  std::vector<std::unique_ptr<Process>> commands;
  for (int i = 0; i < 8; ++i) {
    const Arguments arguments{CONTROL, "process", "start", i % 2 == 0 ? "vfkit" : "limactl"};
    commands.push_back(std::make_unique<Process>(arguments, environment));
  }
  for (const auto& command : commands) EXPECT_EQ(command->end(), 0);
  EXPECT_EQ(state(simulatedstate::applications)["processes"].size(), 8U);
  control({"process", "stop", "vfkit"});
  EXPECT_EQ(state(simulatedstate::applications)["processes"], Json(Arguments(4, "limactl")));
}

TEST_F(Programs, AToolIsExecutableUntilItIsRemoved) {
  const auto tool = root + "/opt/homebrew/bin/colima";
  control({"tool", "install", "colima"});
  EXPECT_EQ(run(tool, {}).status, 0);
  control({"tool", "remove", "colima"});
  EXPECT_FALSE(std::filesystem::exists(tool));
}

TEST_F(Programs, AScenarioThatNamesTheSoftwareOfTheMacReplacesIt) {
  namespace fs = std::filesystem;
  const auto age = [this](const char* macPath) {
    return fs::file_time_type::clock::now() - fs::last_write_time(root + macPath);
  };
  const auto docker = root + "/Users/robin/Library/Group Containers/group.com.docker/settings-store.json";
  const auto own = place.write("root/opt/homebrew/bin/jq", "the user's own");
  control({"tool", "install", "colima"});
  control({"app", "start", "com.docker.docker"});
  control({"docker-sharing", "/Users"});
  control({"scenario", "protected"});
  EXPECT_TRUE(fs::exists(docker)) << "a scenario that names none leaves it";
  control({"scenario", "containers-none"});
  const auto none = state(simulatedstate::applications);
  EXPECT_EQ(none, Json::parse(R"({"installed": [], "processes": [], "running": []})"));
  EXPECT_FALSE(fs::exists(docker));
  EXPECT_FALSE(fs::exists(root + "/opt/homebrew/bin/colima"));
  EXPECT_TRUE(fs::exists(own)) << "it was not installed here";
  EXPECT_GT(age(endpointfiles::trustBundle), std::chrono::minutes(59));
  control(
      {"set", "mac", R"({"running": {"com.one": null, "com.two": "1970-01-01T00:00:05Z"}, "bundle": 2})"});
  EXPECT_EQ(state(simulatedstate::applications)["running"],
            Json::parse(R"([{"identifier": "com.one", "launched": null},
                            {"identifier": "com.two", "launched": 5000}])"));
  EXPECT_LT(age(endpointfiles::trustBundle), std::chrono::minutes(1)) << "published now";
  control({"app", "stop", "com.one"});
  control({"set", "mdm_enrolled", "true"});
  EXPECT_EQ(state(simulatedstate::applications)["running"].size(), 1U) << "other keys leave it";
}

TEST_F(Programs, DockerSharingKeepsTheOtherSettings) {
  const std::string path = "/Users/robin/Library/Group Containers/group.com.docker/settings-store.json";
  place.write("root" + path, R"({"cpus": 4, "filesharingDirectories": ["/old"]})");
  control({"docker-sharing", "/Users", "/Volumes/My Disk"});
  EXPECT_EQ(state(path.c_str()),
            Json::parse(R"({"cpus": 4, "filesharingDirectories": ["/Users", "/Volumes/My Disk"]})"));
  for (const auto* damaged : {"{", "[]"}) {
    place.write("root" + path, damaged);
    EXPECT_EQ(run(CONTROL, {"docker-sharing", "/Users"}).status, 1);
    EXPECT_EQ(place.read("root" + path), damaged);
  }
  control({"docker-sharing", "none"});
  EXPECT_FALSE(std::filesystem::exists(root + path));
  control({"docker-sharing", "/Users"});
  EXPECT_EQ(state(path.c_str()), Json::parse(R"({"filesharingDirectories": ["/Users"]})"));
}

TEST_F(Programs, TheTrustBundleHoldsOneOrTwoCertificates) {
  const auto bundle = "root" + std::string(endpointfiles::trustBundle);
  control({"bundle", "publish"});
  const auto first = place.read(bundle);
  EXPECT_TRUE(isCertificate(first));
  EXPECT_EQ(first, place.read("root" + std::string(endpointfiles::certificate)));
  control({"bundle", "publish", "2"});
  const auto second = place.read(bundle);
  ASSERT_TRUE(second.starts_with(first));
  EXPECT_TRUE(isCertificate(second.substr(first.size())));
  EXPECT_NE(second.substr(first.size()), first);
  control({"bundle", "publish", "1"});
  EXPECT_EQ(place.read(bundle), first);
  control({"bundle", "publish", "2"});
  EXPECT_EQ(place.read(bundle), second);
  control({"bundle", "remove"});
  EXPECT_FALSE(std::filesystem::exists(place / bundle));
}

TEST_F(Programs, TheControlProgramReportsItsErrors) {
  struct Row {
    Arguments arguments;
    int status;
    const char* named;
  };
  const Row rows[] = {
      {{}, 2, "  serve "},
      {{"scenario", "setling"}, 1, "\"settling\""},
      {{"scenario", "../protected"}, 1, "there is no scenario"},
      {{"set", "helper.exit"}, 2, "a key and a value"},
      {{"set", "helper.exti", "3"}, 1, "\"exti\""},
      {{"set", "extension.awaiting", "tea"}, 1, "\"awaiting\""},
      {{"approve"}, 1, "nothing waits"},
      {{"agent"}, 1, "no menu-bar agent"},
      {{"trust", "perhaps"}, 2, "accept, cancel, refuse"},
      {{"fail-saves", "2", "D", "x"}, 2, "a code"},
      {{"network", "up"}, 2, "`network up en0`"},
      {{"network", "up", "en0", ""}, 2, "`network up en0`"},
      {{"network", "down", "en0"}, 2, "`network up en0`"},
      {{"network"}, 2, "`network up en0`"},
      {{"wake", "up"}, 2, "no command"},
      {{"notifications", "maybe"}, 2, "real, authorized, denied, undetermined"},
      {{"app", "start"}, 2, "app takes"},
      {{"app", "start", ""}, 2, "app takes"},
      {{"app", "open", "com.one"}, 2, "app takes"},
      {{"app", "stop", "com.one", "--launched", "2025-01-02T03:04:05Z"}, 2, "app takes"},
      {{"app", "start", "com.one", "--launched", "yesterday"}, 2, "\"yesterday\" is no time"},
      {{"tool", "install", "../colima"}, 2, "a name without slash"},
      {{"tool", "install", ".."}, 2, "a name without slash"},
      {{"process", "start"}, 2, "process takes"},
      {{"docker-sharing"}, 2, "docker-sharing takes"},
      {{"docker-sharing", "/Users", "none"}, 2, "docker-sharing takes"},
      {{"bundle", "publish", "3"}, 2, "bundle takes"},
      {{"bundle", "remove", "1"}, 2, "bundle takes"},
      {{"fail-tea", "2", "D", "4"}, 2, "no command"},
      {{"set", "report.version", "\xff"}, 1, "UTF-8"},
  };
  for (const auto& row : rows) {
    const auto ran = run(CONTROL, row.arguments);
    EXPECT_EQ(ran.status, row.status) << testing::PrintToString(row.arguments);
    EXPECT_NE(ran.error.find(row.named), std::string::npos) << ran.error;
    EXPECT_EQ(ran.output, "");
    EXPECT_FALSE(std::filesystem::exists(root));
  }
  place.write("root", "a file in place of the folder");
  EXPECT_NE(run(CONTROL, {"scenario", "protected"}).error.find("cannot lock " + root), std::string::npos);
}

}  // namespace
}  // namespace ostrel::simulated
