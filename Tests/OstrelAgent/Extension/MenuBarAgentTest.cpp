#include "OstrelAgent/Extension/MenuBarAgent.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <nlohmann/json.hpp>

#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

using Arguments = std::vector<std::string>;

constexpr const char* jobPath = "/Users/robin/Library/LaunchAgents/tech.brenn.ostrel-agent.menubar.plist";
constexpr const char* running = "menu bar:    status UI running (now and at every login)\n";
constexpr const char* job = "gui/501/tech.brenn.ostrel-agent.menubar";

const Arguments bootout = {"bootout", job};
const Arguments bootstrap = {"bootstrap", "gui/501", jobPath};
const Arguments kickstart = {"kickstart", "-k", job};

struct MenuBarAgentTest : testing::Test {
  /// The launchctl calls since the last check.
  std::vector<Arguments> takeCalls() {
    std::vector<Arguments> calls;
    for (const auto& command : std::exchange(host.childProcesses.commands, {})) {
      EXPECT_EQ(command.executable, "/bin/launchctl");
      EXPECT_EQ(command.output, ChildStream::discarded);
      EXPECT_EQ(command.error, ChildStream::discarded);
      calls.push_back(command.arguments);
    }
    return calls;
  }

  void script(std::initializer_list<std::int32_t> statuses) {
    for (const auto status : statuses) host.childProcesses.script.emplace_back(ChildResult{status, ""});
  }

  FakeHost host;
  MenuBarAgent agent{host.bundle, host.files, host.childProcesses, host.standardStreams, host.userAccount};
};

TEST_F(MenuBarAgentTest, InstallingAgainReplacesTheJob) {
  for (const std::int32_t bootoutStatus : {3, 0}) {
    script({bootoutStatus, 0});
    agent.install();
    EXPECT_EQ(takeCalls(), (std::vector<Arguments>{bootout, bootstrap}));
    EXPECT_EQ(std::exchange(host.standardStreams.output, ""), running);
    EXPECT_TRUE(agent.isInstalled());
    EXPECT_EQ(host.files.read(jobPath), *MenuBarAgent::jobFile(host.bundle.executablePath()));
    host.files.put(jobPath, "damaged");
  }
}

TEST_F(MenuBarAgentTest, AJobThatDoesNotStartNowStartsAtTheNextLogin) {
  const FakeChildProcesses::Result rows[] = {
      ChildResult{5, ""}, std::unexpected(PlatformError{posixErrorDomain, ENOENT, "no launchctl"})};
  for (const auto& result : rows) {
    host.childProcesses.script = {result, result};
    agent.install();
    EXPECT_EQ(std::exchange(host.standardStreams.output, ""),
              "menu bar:    LaunchAgent written; the status UI starts at next login\n");
    EXPECT_TRUE(agent.isInstalled());
  }
  host.childProcesses.script = {rows[1]};
  EXPECT_EQ(agent.launchctl({"print"}), 126);
}

TEST_F(MenuBarAgentTest, StopsSilentlyWhenTheHostShutsDown) {
  const FakeChildProcesses::Result ended = std::unexpected(FakeChildProcesses::endOfHost());
  const FakeChildProcesses::Result notLoaded = ChildResult{113, ""};
  struct Row {
    void (MenuBarAgent::*call)() const;
    std::vector<FakeChildProcesses::Result> results;
    std::vector<Arguments> calls;
  };
  const Row rows[] = {{&MenuBarAgent::install, {ended}, {bootout}},
                      {&MenuBarAgent::install, {notLoaded, ended}, {bootout, bootstrap}},
                      {&MenuBarAgent::restart, {ended}, {kickstart}},
                      {&MenuBarAgent::restart, {notLoaded, ended}, {kickstart, bootstrap}},
                      {&MenuBarAgent::remove, {ended}, {bootout}}};
  for (const auto& row : rows) {
    host.childProcesses.script = {row.results.begin(), row.results.end()};
    (agent.*row.call)();
    EXPECT_EQ(takeCalls(), row.calls);
    EXPECT_TRUE(agent.isInstalled());
    EXPECT_EQ(host.standardStreams.output, "");
  }
}

TEST_F(MenuBarAgentTest, AnUnwritableJobFileIsReportedAndNoJobStarted) {
  const auto error = [](const char* reason) {
    return "menu bar: could not write LaunchAgent (" + std::string(reason) + ") — skipped\n";
  };
  host.files.put("/Users/robin/Library/LaunchAgents", "a file in the folder's place");
  agent.install();
  EXPECT_EQ(std::exchange(host.standardStreams.output, ""), error("errno 20"));
  host.files.files.clear();
  host.files.writeError = PlatformError{posixErrorDomain, ENOSPC, "No space left on device"};
  agent.install();
  EXPECT_EQ(std::exchange(host.standardStreams.output, ""), error("No space left on device"));
  host.files.writeError.reset();
  host.bundle.executable = "/Applications/\x01/OstrelAgent";
  agent.install();
  EXPECT_EQ(std::exchange(host.standardStreams.output, ""),
            error("the program's path has characters that no property list can hold"));
  host.bundle.executable = "";
  agent.install();
  EXPECT_EQ(host.standardStreams.output, "") << "without a path there is nothing to start";
  EXPECT_TRUE(takeCalls().empty());
  EXPECT_FALSE(agent.isInstalled());
}

TEST_F(MenuBarAgentTest, RestartsALoadedJobAndLoadsOneThatIsNot) {
  script({0});
  agent.restart();
  EXPECT_EQ(takeCalls(), std::vector<Arguments>{kickstart});
  script({113, 5, 113});
  agent.restart();
  EXPECT_EQ(takeCalls(), (std::vector<Arguments>{kickstart, bootstrap, kickstart}));
  EXPECT_EQ(host.standardStreams.output + host.standardStreams.error, "");
}

TEST_F(MenuBarAgentTest, RemovesAnInstalledJobAndIsSilentWithoutOne) {
  script({0, 0, 3});
  agent.install();
  EXPECT_EQ(std::exchange(host.standardStreams.output, ""), running);

  (void)takeCalls();
  agent.remove();
  EXPECT_FALSE(agent.isInstalled());
  script({3});
  agent.remove();
  EXPECT_EQ(takeCalls(), (std::vector<Arguments>{bootout, bootout}));
  EXPECT_EQ(host.standardStreams.output + host.standardStreams.error, "");
}

TEST(MenuBarAgentJobFile, IsReadByAnIndependentParser) {
  const std::string paths[] = {
      "/Applications/OstrelAgent.app/Contents/MacOS/OstrelAgent",
      "/Users/rob & \"ann\" <x> 'y' &amp; ]]>/Ünïcode→🛡️/tab\there/line\nfeed/cr\r/ two  spaces "
      "/OstrelAgent",
  };
  for (const auto& path : paths) {
    const auto bytes = MenuBarAgent::jobFile(path);
    ASSERT_TRUE(bytes);
    const auto ran = run({PYTHON, "-c",
                          "import json, plistlib, sys\n"
                          "print(json.dumps(plistlib.loads(sys.stdin.buffer.read(), fmt=plistlib.FMT_XML)))"},
                         {}, *bytes);
    EXPECT_EQ(ran.status, 0) << ran.error;
    EXPECT_EQ(nlohmann::json::parse(ran.output, nullptr, false),
              (nlohmann::json{{"Label", "tech.brenn.ostrel-agent.menubar"},
                              {"ProgramArguments", {path, "menubar"}},
                              {"RunAtLoad", true},
                              {"ProcessType", "Interactive"}}));
  }
  for (const auto* path : {"/\x1b/x", "/\xff/x", "/\xed\xa0\x80/x", "/\xef\xbf\xbe/x"}) {
    EXPECT_FALSE(MenuBarAgent::jobFile(path)) << path;
  }
}

}  // namespace
}  // namespace ostrel
