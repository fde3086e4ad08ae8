#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "SimulatedEndpoint/Json.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel::simulated {
namespace {

using namespace std::chrono_literals;

struct Ending {
  int status = -1;  // of waitpid
  std::string output;
  std::string error;

  int exitStatus() const { return WIFEXITED(status) ? WEXITSTATUS(status) : -1; }
  int signal() const { return WIFSIGNALED(status) ? WTERMSIG(status) : 0; }
};

bool ignoresTermination(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/status");
  std::string word;
  while (file >> word && word != "SigIgn:") {
  }
  file >> word;
  return (std::stoull(word, nullptr, 16) >> (SIGTERM - 1) & 1) != 0;
}

/// The programs over a host root of their own.
class Programs : public testing::Test {
 protected:
  void SetUp() override { setenv("OSTREL_HOST_ROOT", root_.c_str(), 1); }

  pid_t start(const std::string& program, std::vector<std::string> arguments) {
    std::vector<char*> pointers(arguments.size() + 2, nullptr);
    pointers[0] = const_cast<char*>(program.c_str());
    std::ranges::transform(arguments, pointers.begin() + 1, [](std::string& text) { return text.data(); });
    const auto output = place_ / "output";
    const auto error = place_ / "error";
    const pid_t child = fork();
    if (child != 0) return child;
    if (!std::freopen(output.c_str(), "w", stdout) || !std::freopen(error.c_str(), "w", stderr)) _exit(126);
    execv(program.c_str(), pointers.data());
    _exit(127);
  }

  Ending finish(pid_t child) {
    Ending ending;
    EXPECT_EQ(waitpid(child, &ending.status, 0), child);
    ending.output = place_.read("output");
    ending.error = place_.read("error");
    return ending;
  }

  Ending run(const std::string& program, std::vector<std::string> arguments) {
    return finish(start(program, std::move(arguments)));
  }

  Ending status() { return run(HELPER, {"status", "--json"}); }

  void control(std::vector<std::string> arguments) {
    const auto ending = run(CONTROL, std::move(arguments));
    ASSERT_EQ(ending.exitStatus(), 0) << ending.error;
  }

  Json state(const char* macPath) { return Json::parse(place_.read("root" + std::string(macPath))); }

  TemporaryFolder place_;
  const std::string root_ = place_ / "root";
};

TEST_F(Programs, AnEmptyHostRootIsProtectedAndStaysEmpty) {
  const auto ending = status();
  ASSERT_EQ(ending.exitStatus(), 0) << ending.error;
  const auto report = Json::parse(ending.output);
  EXPECT_EQ(report["health"]["verdict"], "protected");
  EXPECT_TRUE(report["checkin"]["last_success"].get<std::string>().ends_with("Z"));
  EXPECT_FALSE(std::filesystem::exists(root_));
}

TEST_F(Programs, TheHelperFailsAsTheScenarioSays) {
  struct Row {
    const char* scenario;
    int exitStatus;
    int signal;
    bool isJson;
    bool hasDaemonListening;
    std::size_t leastSize;
    std::size_t mostSize;
  };
  constexpr std::array<Row, 6> rows = {{
      {"helper-exit-3", 3, 0, true, true, 2000, 20'000},
      {"helper-garbage", 0, 0, false, false, 1, 200},
      {"helper-missing-key", 0, 0, true, false, 2000, 20'000},
      {"helper-huge", 0, 0, true, true, 5'000'000, 5'000'000},
      {"helper-killed", -1, SIGKILL, true, true, 2000, 20'000},
      {"helper-truncated", 0, 0, false, true, 700, 700},
  }};
  for (const auto& row : rows) {
    control({"scenario", row.scenario});
    const auto ending = status();
    EXPECT_EQ(ending.exitStatus(), row.exitStatus) << row.scenario;
    EXPECT_EQ(ending.signal(), row.signal) << row.scenario;
    EXPECT_EQ(Json::accept(ending.output), row.isJson) << row.scenario;
    EXPECT_EQ(ending.output.find("daemon_listening") != std::string::npos, row.hasDaemonListening)
        << row.scenario;
    EXPECT_GE(ending.output.size(), row.leastSize) << row.scenario;
    EXPECT_LE(ending.output.size(), row.mostSize) << row.scenario;
  }
}

TEST_F(Programs, AHangingHelperSaysNothingUntilItIsEnded) {
  control({"scenario", "helper-hangs"});
  const auto polite = start(HELPER, {"status", "--json"});
  std::this_thread::sleep_for(300ms);
  kill(polite, SIGTERM);
  const auto ended = finish(polite);
  EXPECT_EQ(ended.signal(), SIGTERM);
  EXPECT_EQ(ended.output, "");

  control({"scenario", "helper-hangs-ignoring-term"});
  const auto stubborn = start(HELPER, {"status", "--json"});
  while (!ignoresTermination(stubborn)) std::this_thread::sleep_for(5ms);
  kill(stubborn, SIGTERM);
  std::this_thread::sleep_for(100ms);
  EXPECT_EQ(waitpid(stubborn, nullptr, WNOHANG), 0);
  kill(stubborn, SIGKILL);
  EXPECT_EQ(finish(stubborn).signal(), SIGKILL);
}

TEST_F(Programs, TheHelperCanOutliveItsOutput) {
  control({"set", "helper", R"({"close_output_and_live_ms": 600})"});
  auto* const helper = popen("exec '" HELPER "' status --json", "r");
  ASSERT_NE(helper, nullptr);
  std::string output;
  for (int byte = 0; (byte = std::fgetc(helper)) != EOF;) output += static_cast<char>(byte);
  const auto closed = std::chrono::steady_clock::now();
  EXPECT_EQ(pclose(helper), 0);
  EXPECT_GE(std::chrono::steady_clock::now() - closed, 100ms);
  EXPECT_TRUE(Json::accept(output));
}

TEST_F(Programs, AnyOtherHelperCommandLineIsAUsageError) {
  const std::vector<std::vector<std::string>> rows = {
      {},
      {"status"},
      {"status", "--json", "-v"},
      {"--json", "status"},
      {"diagnostics", "--network-extension"},
      {"diagnostics", "--network-extension", "{}", "--save"},
      {"diagnostics", "--network-extension", "{}", "--send", "x"},
      {"uninstall"},
      {"uninstall", "--removal-kind=app_deactivate", "--untrust-ca"},
  };
  for (const auto& row : rows) {
    const auto ending = run(HELPER, row);
    EXPECT_EQ(ending.exitStatus(), 2) << testing::PrintToString(row);
    EXPECT_EQ(ending.output, "");
    EXPECT_TRUE(ending.error.starts_with("usage: ")) << ending.error;
  }
}

TEST_F(Programs, DiagnosticsTellStatesButNotWho) {
  control({"scenario", "trust-gap"});
  for (const auto& [text, expected] : std::vector<std::pair<std::string, Json>>{
           {R"({"sysext_active":true})", {{"sysext_active", true}}}, {"", ""}, {"{\"x", "{\"x"}}) {
    const auto ending = run(HELPER, {"diagnostics", "--network-extension", text});
    ASSERT_EQ(ending.exitStatus(), 0) << ending.error;
    const auto bundle = Json::parse(ending.output);
    EXPECT_EQ(bundle["network_extension"], expected);
    EXPECT_EQ(bundle["components"]["runtime_trust"]["code"], "TRUST_KNOB_UNCOVERED");
    EXPECT_EQ(ending.output.find("robin"), std::string::npos);
  }
  EXPECT_TRUE(Json::accept(run(HELPER, {"diagnostics", "--network-extension", "\xff"}).output));
}

TEST_F(Programs, SendingDiagnosticsEndsAsTheScenarioSays) {
  const auto send = [&] {
    return Json::parse(run(HELPER, {"diagnostics", "--network-extension", "{}", "--send"}).output);
  };
  EXPECT_EQ(send()["sent"], true);
  EXPECT_TRUE(send()["sent_at"].is_string());
  control({"set", "helper.send", "retry"});
  EXPECT_EQ(send()["sent"], false);
  EXPECT_GE(send()["retry_after_seconds"], 1);
  control({"set", "helper.send", "error"});
  EXPECT_EQ(send()["sent"], false);
  EXPECT_TRUE(send()["error"].is_string());
}

TEST_F(Programs, UninstallLeavesAMacWithoutEndpoint) {
  const std::string launchFile = "/Library/LaunchDaemons/tech.brenn.ostrel-agent-endpoint.plist";
  place_.write("root" + launchFile, "<plist/>");
  control({"set", "helper.exit", "4"});
  const auto ending = run(HELPER, {"uninstall", "--untrust-ca", "--removal-kind=app_deactivate"});
  EXPECT_EQ(ending.exitStatus(), 4);
  EXPECT_TRUE(ending.output.starts_with("==> ")) << ending.output;
  EXPECT_NE(ending.output.find("==> Removing " + launchFile), std::string::npos) << ending.output;
  EXPECT_FALSE(std::filesystem::exists(root_ + launchFile));
  control({"set", "helper", "{}"});
  const auto report = Json::parse(status().output);
  EXPECT_EQ(report["enrolled"], false);
  EXPECT_EQ(report["token_present"], false);
  EXPECT_EQ(report["daemon_listening"], false);
  EXPECT_EQ(report["health"]["verdict"], "not_protected");
}

TEST_F(Programs, TheSimulatedPreferencesFollowUnlessOnlyTheReportChanges) {
  const std::string savedByTheAgent = R"([{"enabled": true, "connected": true}])";
  control({"scenario", "filter-off"});
  EXPECT_EQ(state(simulatedstate::transparentProxies),
            Json::parse(R"([{"enabled": false, "connected": false}])"));
  EXPECT_EQ(state(simulatedstate::contentFilter), Json({{"provider", true}, {"enabled", true}}));
  EXPECT_EQ(state(simulatedstate::deviceManagement), Json({{"enrolled", false}}));
  control({"set", "mdm_enrolled", "true"});
  EXPECT_EQ(state(simulatedstate::deviceManagement), Json({{"enrolled", true}}));
  control({"set", "network.content_filter.enabled", "false"});
  EXPECT_EQ(state(simulatedstate::contentFilter), Json({{"provider", true}, {"enabled", false}}));
  place_.write("root" + std::string(simulatedstate::transparentProxies), savedByTheAgent);
  control({"set", "report.health.verdict", "protected"});
  EXPECT_EQ(state(simulatedstate::transparentProxies), Json::parse(savedByTheAgent));
  EXPECT_EQ(Json::parse(status().output)["health"]["verdict"], "protected");
}

TEST_F(Programs, TheProfilesToolTellsDeviceManagement) {
  const auto tool = root_ + "/usr/bin/profiles";
  std::filesystem::create_directories(root_ + "/usr/bin");
  std::filesystem::create_symlink("/nowhere/profiles", tool);
  control({"scenario", "managed"});
  EXPECT_EQ(run(tool, {"status", "-type", "enrollment"}).output,
            "Enrolled via DEP: No\nMDM enrollment: Yes (User Approved)\n");
  control({"scenario", "protected"});
  EXPECT_EQ(run(tool, {"status", "-type", "enrollment"}).output,
            "Enrolled via DEP: No\nMDM enrollment: No\n");
  EXPECT_EQ(run(tool, {"status"}).exitStatus(), 1);
  for (const auto* damaged : {"{\"enrolled\": 1}", "true", "{"}) {
    place_.write("root" + std::string(simulatedstate::deviceManagement), damaged);
    const auto ending = run(tool, {"status", "-type", "enrollment"});
    EXPECT_EQ(ending.exitStatus(), 1) << damaged;
    EXPECT_EQ(ending.output, "");
    EXPECT_NE(ending.error.find("device-management.json"), std::string::npos) << ending.error;
  }
}

TEST_F(Programs, ADamagedScenarioIsToldAndMendedByChoosingOne) {
  for (const auto* damaged : {"", "{\"report\": {", "[]", R"({"report": {}, "helper": {"exti": 1}})"}) {
    place_.write("root" + std::string(simulatedstate::scenario), damaged);
    for (const auto& ending : {status(), run(CONTROL, {"show"}), run(CONTROL, {"set", "helper.exit", "3"})}) {
      EXPECT_EQ(ending.exitStatus(), 1) << damaged;
      EXPECT_EQ(ending.output, "");
      EXPECT_NE(ending.error.find("scenario.json"), std::string::npos) << ending.error;
    }
    EXPECT_EQ(place_.read("root" + std::string(simulatedstate::scenario)), damaged);
    control({"scenario", "protected"});
    EXPECT_EQ(status().exitStatus(), 0);
  }
}

TEST_F(Programs, TheControlProgramSaysWhatIsWrong) {
  struct Row {
    std::vector<std::string> arguments;
    int status;
    const char* named;
  };
  const std::array<Row, 9> rows = {{
      {{}, 2, "simulated-endpoint list"},
      {{"scenario"}, 2, "simulated-endpoint list"},
      {{"scenario", "a", "b"}, 2, "one name"},
      {{"scenario", "setling"}, 1, "\"settling\""},
      {{"scenario", "../protected"}, 1, "there is no scenario"},
      {{"set", "helper.exit"}, 2, "a key and a value"},
      {{"set", "helper.exti", "3"}, 1, "\"exti\""},
      {{"set", "report.version", "\xff"}, 1, "UTF-8"},
      {{"reset"}, 2, "\"reset\""},
  }};
  for (const auto& row : rows) {
    const auto ending = run(CONTROL, row.arguments);
    EXPECT_EQ(ending.exitStatus(), row.status) << testing::PrintToString(row.arguments);
    EXPECT_NE(ending.error.find(row.named), std::string::npos) << ending.error;
    EXPECT_EQ(ending.output, "");
    EXPECT_FALSE(std::filesystem::exists(root_));
  }
}

TEST_F(Programs, AHostRootThatCannotBeMadeIsTold) {
  place_.write("root", "a file in place of the folder");
  const auto ending = run(CONTROL, {"scenario", "protected"});
  EXPECT_EQ(ending.exitStatus(), 1);
  EXPECT_NE(ending.error.find("cannot write " + root_), std::string::npos) << ending.error;
  EXPECT_EQ(place_.read("root"), "a file in place of the folder");
}

}  // namespace
}  // namespace ostrel::simulated
