#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <deque>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <mutex>
#include <sstream>

#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"
#include "Tests/Fakes/UnixServer.hpp"

namespace ostrel {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Words = std::vector<std::string>;

constexpr const char* helperName = "OstrelAgent.app/Contents/Helpers/ostrel-agent-endpoint";
constexpr const char* tableName = "OstrelAgent.app/Contents/Resources/de.lproj/Copy.strings";

std::ptrdiff_t countEntries(const std::string& folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

/// The fields after the name in /proc/PID/stat: state, parent, and so on.
std::vector<std::string> statWords(pid_t process) {
  const auto line = contentOf("/proc/" + std::to_string(process) + "/stat");
  std::istringstream words(line.substr(line.rfind(')') + 1));
  return {std::istream_iterator<std::string>(words), {}};
}

/// The program over a host root of its own, which no process outlives.
struct OstrelAgent : testing::Test {
  void TearDown() override { EXPECT_TRUE(processesWith(place.path()).empty()) << "a child is left"; }

  std::string procFolder(const Process& process, const char* name) const {
    return "/proc/" + std::to_string(process.number()) + "/" + name;
  }

  bool hasOpen(const Process& process, std::string_view name) const {
    std::error_code error;
    const fs::directory_iterator descriptors(procFolder(process, "fd"), error);
    return std::ranges::any_of(descriptors, [&](const auto& descriptor) {
      return fs::read_symlink(descriptor.path(), error).filename() == name;
    });
  }

  void control(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), CONTROL);
    const auto ran = run(arguments, environment);
    ASSERT_EQ(ran.status, 0) << ran.error;
  }

  /// Puts the program into a bundle whose other files are the test's own.
  void copyBundle() {
    agent = place.write("OstrelAgent.app/Contents/MacOS/OstrelAgent", "");
    fs::copy_file(AGENT, agent, fs::copy_options::overwrite_existing);
  }

  /// The path of the daemon's socket; makes its folder.
  std::string socketPath(const std::string& root = "root") const {
    const auto folder = place / root + "/Library/Application Support";
    fs::create_directories(folder);
    return folder + "/ostrel-agent-endpoint.control.sock";
  }

  /// Starts the menu-bar role and gives it lines to read.
  Process menuBar(std::string_view lines = {}) { return Process({agent, "menubar"}, environment, lines); }

  TemporaryFolder place;
  std::string agent = AGENT;
  Process::Environment environment{{"HOME", "/Users/robin"}, {"OSTREL_HOST_ROOT", place / "root"}};
};

TEST_F(OstrelAgent, AnswersAnUnknownCommandWithTheUsageLine) {
  for (const char* word : {"", "Repair", "--extension-only"}) {
    const auto ran = run({agent, word, "menubar"}, environment);
    EXPECT_EQ(ran.status, 2) << word;
    EXPECT_EQ(ran.error, "usage: OstrelAgent activate|deactivate|reactivate|menubar|onboarding|repair\n");
    EXPECT_EQ(ran.output, "");
  }
}

TEST_F(OstrelAgent, ItsDefaultCommandFollowsTheAnswersOfTheDaemon) {
  const auto opensSetup = [this] {
    return run({agent}, environment, "quit\n").output.contains("Set up Ostrel Agent");
  };
  EXPECT_TRUE(opensSetup()) << "without a daemon";
  std::atomic<bool> isPending = true;
  const UnixServer daemon(socketPath(), [&isPending](int connection) {
    const bool isAboutTrust = UnixServer::readLine(connection).contains("catrust");
    const std::string trust =
        isPending ? R"({"ok":true,"trust_pending":true})" : R"({"ok":true,"trust_pending":false})";
    UnixServer::send(connection, (isAboutTrust ? trust : R"({"ok":true,"enrolled":true})") + "\n");
  });
  EXPECT_TRUE(opensSetup());
  isPending = false;
  EXPECT_TRUE(run({agent}, environment).error.starts_with("no enforcement daemon installed")) << "activates";
}

TEST_F(OstrelAgent, ASignalEndsItWhileTheDaemonIsSilentOrSlow) {
  struct Row {
    std::vector<std::string> command;
    UnixServer::Serve serve;
    int status;
    const char* lines = "";
  };
  const Row rows[] = {{{agent}, UnixServer::awaitClose, -SIGTERM},
                      {{agent, "onboarding"}, UnixServer::awaitClose, 128 + SIGTERM},
                      {{agent, "onboarding"}, UnixServer::drip, 128 + SIGTERM},
                      {{agent, "menubar"}, UnixServer::drip, 128 + SIGTERM, "panel\npress 1\n"}};
  for (const auto& row : rows) {
    std::atomic<bool> isAsked = false;
    const UnixServer daemon(socketPath(), [&](int connection) {
      isAsked = true;
      row.serve(connection);
    });
    Process process(row.command, environment, row.lines);
    EXPECT_TRUE(becomesTrue([&isAsked] { return isAsked.load(); }));
    process.signal(SIGTERM);
    EXPECT_EQ(process.end(10s), row.status);
    fs::remove(socketPath());
  }
}

TEST_F(OstrelAgent, ShowsOneIconPerUserAndWaitsForAnEarlierAgentToExit) {
  const auto shown = "Ostrel Agent: status not reported\n";
  auto first = menuBar();
  first.awaitOutput(shown);
  auto second = menuBar();
  auto other = environment;
  other["HOME"] = "/Users/kim";
  Process others({agent, "menubar"}, other);
  others.awaitOutput(shown);
  auto leaving = menuBar();
  EXPECT_TRUE(becomesTrue([&] { return hasOpen(leaving, "menubar.lock"); }));
  leaving.signal(SIGTERM);
  EXPECT_EQ(leaving.end(2s), -SIGTERM);
  EXPECT_EQ(second.end(), 0);
  EXPECT_EQ(second.output(), "");
  EXPECT_EQ(second.error(), "the menu-bar agent is running already\n");
  auto third = menuBar("quit\n");
  EXPECT_TRUE(becomesTrue([&] { return hasOpen(third, "menubar.lock"); }));
  first.signal(SIGKILL);
  third.awaitOutput(shown);
  EXPECT_EQ(first.end(), -SIGKILL);
  EXPECT_EQ(third.end(), 0);
  others.write("quit\n");
  EXPECT_EQ(others.end(), 0);
}

TEST_F(OstrelAgent, ChecksInOnceAfterAWakeIfTheNetworkIsUp) {
  // Beside it a Mac whose network is down.
  const std::string roots[] = {"root", "offline"};
  std::deque<UnixServer> daemons;
  std::deque<Process> agents;
  std::mutex mutex;
  std::multimap<std::string, std::string> requests;
  for (const auto& root : roots) {
    environment["OSTREL_HOST_ROOT"] = place / root;
    control(root == "offline" ? Words{"network", "down"} : Words{"network", "up", "en0"});
    control({"wake"});
    daemons.emplace_back(socketPath(root), [&, root](int connection) {
      const std::lock_guard lock(mutex);
      requests.emplace(root, UnixServer::readLine(connection));
      UnixServer::send(connection, "{\"ok\":true,\"checked_in\":true}\n");
    });
    agents.emplace_back(Words{agent, "menubar"}, environment);
    agents.back().awaitOutput("Ostrel Agent: protected\n");
  }
  const auto woken = std::chrono::steady_clock::now();
  for (const auto& root : roots) {
    environment["OSTREL_HOST_ROOT"] = place / root;
    control({"wake"});
  }
  environment["OSTREL_HOST_ROOT"] = place / "root";
  control({"network", "up", "en0", "en1"});
  EXPECT_TRUE(becomesTrue([&] { return std::lock_guard(mutex), !requests.empty(); }));
  EXPECT_GE(std::chrono::steady_clock::now() - woken, 10s);
  std::this_thread::sleep_for(500ms);
  for (const auto& each : agents) each.signal(SIGTERM);
  for (auto& each : agents) EXPECT_EQ(each.end(), 128 + SIGTERM);
  const std::lock_guard lock(mutex);
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests.begin()->first, "root");
  EXPECT_TRUE(requests.begin()->second.contains("\"reason\":\"wake\"")) << requests.begin()->second;
}

TEST_F(OstrelAgent, ServesTheCommandsOfTheConsole) {
  control({"scenario", "protected"});
  auto process = menuBar("press 1\nx" + std::string(5120, ' ') + "quit\npanel\n");
  process.awaitOutput("open the panel first: panel\n");
  process.awaitOutput(
      "commands: panel, window [PAGE], press N, close, containers [NAME], copy WHAT, notify NAME on|off, "
      "quit\n");
  process.awaitOutput("[6] Quit status icon\n");
  process.write("press 7\npress -1\n");
  process.awaitOutput("the panel has no button 7\n");
  process.awaitOutput("commands: ");
  process.write("press 2\npress 99\npanel\n");
  process.awaitOutput("Ecosystems]");
  process.awaitOutput("the window has no button 99\n");
  process.awaitOutput("[6] Quit status icon\n");
  process.write(" press  6 \r\n");
  EXPECT_EQ(process.end(), 0);
  EXPECT_TRUE(process.output().starts_with("Ostrel Agent: status not reported\n"));
  EXPECT_EQ(process.error(), "");
}

TEST_F(OstrelAgent, PollsTheEndpointEveryFiveSecondsAndIdlesAfterTheEndOfInput) {
  auto process = menuBar("panel");
  process.awaitOutput("Ostrel Agent: protected\n");
  process.closeInput();
  process.awaitOutput("✓ Credential");
  control({"scenario", "daemon-down"});
  process.awaitOutput("Ostrel Agent: not protected\n", 15s);
  process.awaitOutput("✗ Not protected");
  const auto words = statWords(process.number());
  const auto ticks = std::stol(words.at(11)) + std::stol(words.at(12));
  EXPECT_LT(ticks, 2 * sysconf(_SC_CLK_TCK)) << "the end of input keeps it busy";
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
}

TEST_F(OstrelAgent, ExitsCleanlyByQuitAndBySignalsWhileItsHelperHangs) {
  for (const int signal : {0, SIGTERM, SIGINT, SIGHUP}) {
    control({"scenario", signal == SIGINT ? "helper-hangs" : "helper-hangs-ignoring-term"});
    if (signal == SIGTERM) control({"set", "helper", R"({"close_output_and_live_ms": 60000})"});
    auto process = menuBar("press 1\n");
    process.awaitOutput("open the panel first");
    EXPECT_TRUE(becomesTrue([&] { return processesWith(place.path()).size() == 2; }));
    if (signal == 0) process.write("quit\n");
    if (signal != 0) process.signal(signal);
    if (signal == SIGHUP) {
      std::this_thread::sleep_for(300ms);
      process.signal(signal);  // while the helper is given its time to end
    }
    EXPECT_EQ(process.end(10s), signal == 0 ? 0 : 128 + signal);
    EXPECT_TRUE(processesWith(place.path()).empty()) << signal;
    EXPECT_EQ(process.error(), "");
  }
}

TEST_F(OstrelAgent, UsesTheLanguageOfTheEnvironmentOrEnglishIfTheTableIsDamaged) {
  copyBundle();
  fs::copy(fs::path(AGENT).parent_path().parent_path() / "Resources",
           place / "OstrelAgent.app/Contents/Resources", fs::copy_options::recursive);
  const Process::Environment rows[] = {{{"LC_ALL", "de_DE.UTF-8"}, {"LC_MESSAGES", "C"}},
                                       {{"LC_MESSAGES", "de_AT@euro"}, {"LANG", "en_US"}},
                                       {{"LANG", "de"}}};
  for (const auto& row : rows) {
    const bool isDamaged = &row != rows;
    if (isDamaged) place.write(tableName, "\"tooltip.unreported\" = \"x\";\n\"y");
    auto variables = environment;
    variables.insert(row.begin(), row.end());
    Process process({agent, "menubar"}, variables, "quit\n");
    process.awaitOutput(isDamaged ? "status not reported\n" : "Status nicht gemeldet\n");
    EXPECT_EQ(process.end(), 0);
    EXPECT_EQ(process.error().find("damaged in line 2") != std::string::npos, isDamaged) << process.error();
  }
}

TEST_F(OstrelAgent, ShowsFailuresOfTheHelperAndItsRecovery) {
  const std::pair<std::vector<std::string>, const char*> rows[] = {
      {{"scenario", "helper-hangs-ignoring-term"}, "agent status unavailable (exit 9)"},
      {{"scenario", "helper-exit-3"}, "agent status unavailable (exit 3)"},
      {{"scenario", "helper-garbage"}, "agent status unavailable (exit 0)"},
      {{"scenario", "helper-huge"}, "✓ Protected"},
      {{"scenario", "helper-truncated"}, "agent status unavailable (exit 0)"},
      {{"scenario", "helper-killed"}, "agent status unavailable (exit 9)"},
      {{"scenario", "helper-missing-key"}, "agent status unavailable (exit 0)"},
      {{"set", "helper", R"({"close_output_and_live_ms": 300})"}, "✓ Protected"},
      {{"set", "helper", R"({"exit": 255, "truncate_bytes": 0})"}, "agent status unavailable (exit 255)"},
  };
  auto process = menuBar();
  process.awaitOutput("Ostrel Agent: protected\n");
  for (const auto& [arguments, text] : rows) {
    control(arguments);
    for (int request = 0; request < 5; ++request) process.write("close\npanel\n");
    process.awaitOutput(text, 30s);
  }
  process.write("quit\n");
  EXPECT_EQ(process.end(), 0);
}

TEST_F(OstrelAgent, ReportsAHelperThatCannotRunOnStandardErrorAndInThePanel) {
  copyBundle();
  const auto path = place / helperName;
  const auto put = [&](const char* bytes) {
    return [this, bytes] { fs::permissions(place.write(helperName, bytes), fs::perms::owner_all); };
  };
  const auto missing = "embedded ostrel-agent-endpoint not found at " + path + "\n";
  struct Row {
    std::function<void()> arrange;
    int status;
    std::string error;
  };
  const Row rows[] = {
      {[] {}, 127, missing},
      {[&] { place.write(helperName, "#!/bin/sh\n"); }, 127, missing},
      {put("no program"), 126, "failed to run helper: "},
      {put("#!/missing/sh\n"), 126, "failed to run helper: "},
      {put("#!/bin/sh\necho its own words >&2\nkill -SEGV $$\n"), SIGSEGV, "its own words\n"},
  };
  for (const auto& row : rows) {
    fs::remove_all(path);
    row.arrange();
    auto process = menuBar("panel\n");
    process.awaitOutput("agent status unavailable (exit " + std::to_string(row.status) + ")");
    process.write("quit\n");
    EXPECT_EQ(process.end(), 0);
    EXPECT_TRUE(process.error().starts_with(row.error)) << process.error();
  }
}

TEST_F(OstrelAgent, RunsOnADamagedHost) {
  const auto library = "root/Users/robin/Library/Preferences/tech.brenn.ostrel-agent.json";
  const std::pair<std::function<void()>, const char*> rows[] = {
      {[&] { environment.erase("HOME"); }, "✓ Protected"},
      {[&] { environment["HOME"] = "not/absolute"; }, "✓ Protected"},
      {[&] { fs::create_directories(place / library); }, "✓ Protected"},
      {[&] { fs::remove_all(place / "root"), place.write("root", "a file"); }, "agent status unavailable"},
      {[&] { environment["OSTREL_HOST_ROOT"] = "/proc/" + place.path(); }, "✓ Protected"},
  };
  for (const auto& [arrange, text] : rows) {
    arrange();
    auto process = menuBar("panel\n");
    process.awaitOutput(text);
    process.write("quit\n");
    EXPECT_EQ(process.end(), 0);
  }
}

TEST_F(OstrelAgent, RunsWithoutStandardStreams) {
  control({"scenario", "helper-hangs"});
  Process process({"/bin/sh", "-c", "exec \"$0\" menubar <&- >&- 2>&-", agent}, environment);
  EXPECT_TRUE(becomesTrue([&] { return processesWith(place.path()).size() == 2; }));
  for (const char* stream : {"fd/0", "fd/1", "fd/2"}) {
    std::error_code error;
    EXPECT_EQ(fs::read_symlink(procFolder(process, stream), error), "/dev/null");
  }
  process.signal(SIGTERM);
  EXPECT_EQ(process.end(), 128 + SIGTERM);
}

TEST_F(OstrelAgent, RunsOfAHangingHelperStayBoundedAndItsRecoveryShowsWithinOneTick) {
  auto process = menuBar("panel\nclose\n");
  process.awaitOutput("Ostrel Agent: protected\n");
  const auto descriptors = countEntries(procFolder(process, "fd"));
  control({"scenario", "helper-hangs"});
  for (int look = 0; look < 120; ++look) {
    process.write("panel\nclose\n");
    std::this_thread::sleep_for(100ms);
    EXPECT_LE(processesWith(place.path()).size(), 1U + 4U);
    EXPECT_LE(countEntries(procFolder(process, "task")), 1 + 8 + 8);
    EXPECT_LE(countEntries(procFolder(process, "fd")), descriptors + 4 * 5)
        << "of each run two pipes and the child";
  }
  control({"scenario", "daemon-down"});
  process.awaitOutput("Ostrel Agent: not protected\n", 8s);
  process.write("quit\n");
  EXPECT_EQ(process.end(), 0);
}

TEST_F(OstrelAgent, AnUnreapableHelperShowsAsFailedAndDelaysNeitherIconNorExit) {
  auto process = menuBar();
  process.awaitOutput("Ostrel Agent: protected\n");
  control({"set", "helper", R"({"hang": true, "unreapable": true})"});
  process.awaitOutput("Ostrel Agent: status not reported\n", 30s);
  process.write("quit\n");
  EXPECT_EQ(process.end(5s), 0);
  auto next = menuBar("quit\n");
  EXPECT_EQ(next.end(), 0);
  EXPECT_TRUE(becomesTrue([&] { return processesWith(place.path()).empty(); }));
}

TEST_F(OstrelAgent, RefreshingLeaksNoDescriptorChildOrThread) {
  auto process = menuBar("panel\nclose\n");
  process.awaitOutput("Ostrel Agent: protected\n");
  const auto descriptors = countEntries(procFolder(process, "fd"));
  for (int i = 0; i < 20; ++i) {
    process.write("panel\nclose\n");
    process.awaitOutput("✓ Protected");
    EXPECT_TRUE(becomesTrue([&] { return processesWith(place.path()).size() == 1; }));
  }
  const auto hasChild = [&] {
    for (const auto other : processesWith("")) {
      const auto words = statWords(other);
      if (words.size() > 1 && words[1] == std::to_string(process.number())) return true;
    }
    return false;
  };
  EXPECT_TRUE(
      becomesTrue([&] { return !hasChild() && countEntries(procFolder(process, "fd")) <= descriptors; }));
  EXPECT_LE(countEntries(procFolder(process, "task")), 1 + 8 + 4);
  process.write("quit\n");
  EXPECT_EQ(process.end(), 0);
}

}  // namespace
}  // namespace ostrel
