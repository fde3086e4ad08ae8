#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <future>
#include <optional>
#include <thread>

#include "Platform/Posix/PosixChildProcesses.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"
#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/FakeChildProcesses.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

std::string unmapped(std::string_view path) { return std::string(path); }

ChildCommand shell(const std::string& script, ChildStream output = ChildStream::captured) {
  return {"/bin/sh", {"-c", script}, output, ChildStream::discarded};
}

std::size_t countDescriptors() {
  using Folder = std::filesystem::directory_iterator;
  return static_cast<std::size_t>(std::distance(Folder("/proc/self/fd"), Folder()));
}

/// Every test leaves as many descriptors as it found, and no child.
struct PosixChildProcessesTest : testing::Test {
  void TearDown() override {
    made.reset();
    EXPECT_EQ(countDescriptors(), descriptors);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
  }

  /// Runs the script on another thread until it has made its "ready" file; then ends the run.
  std::expected<ChildResult, PlatformError> runAndEnd(const std::string& script,
                                                      const std::function<void()>& end) {
    auto run = std::async(std::launch::async, [&] { return children.run(shell(script), ending()); });
    EXPECT_TRUE(becomesTrue([&] { return std::filesystem::exists(folder / "ready"); })) << script;
    end();
    if (run.wait_for(20s) == std::future_status::timeout) {
      ADD_FAILURE() << "the run did not end";
      children.endAll();
    }
    return run.get();
  }

  ChildStopTokens ending() { return {terminate.get_token(), kill.get_token()}; }
  std::string ready() const { return ": > " + (folder / "ready") + "; "; }

  const std::size_t descriptors = countDescriptors();
  TemporaryFolder folder;
  std::stop_source terminate;
  std::stop_source kill;
  std::optional<PosixChildProcesses> made{std::in_place, unmapped};
  PosixChildProcesses& children = *made;
};

TEST_F(PosixChildProcessesTest, ARunGivesItsStatusAndOutput) {
  struct Row {
    const char* script;
    ChildStream output;
    ChildResult result;
  };
  const Row rows[] = {{"printf hello", ChildStream::captured, {0, "hello"}},
                      {"printf hello; exit 3", ChildStream::captured, {3, "hello"}},
                      {"printf lost; exit 255", ChildStream::discarded, {255, ""}},
                      {"exit 4", ChildStream::inherited, {4, ""}},
                      {"printf partly; kill -SEGV $$", ChildStream::captured, {SIGSEGV, "partly"}},
                      {"printf lost >&2", ChildStream::captured, {0, ""}},
                      {"exec >&-; sleep 0.05; exit 5", ChildStream::captured, {5, ""}},
                      {"cat; echo end", ChildStream::captured, {0, "end\n"}},
                      {"kill -PIPE $$; exit 6", ChildStream::captured, {SIGPIPE, ""}}};
  // Children start with default signals, whatever the agent ignores.
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  for (const auto& row : rows) {
    EXPECT_EQ(children.run(shell(row.script, row.output)), row.result) << row.script;
  }
  (void)std::signal(SIGPIPE, before);
}

TEST_F(PosixChildProcessesTest, AProgramThatCannotBeStartedIsAnError) {
  const auto plain = folder.write("plain", "#!/bin/sh\n");
  const auto noFormat = folder.write("noFormat", "no program");
  ::chmod(noFormat.c_str(), 0755);
  const std::pair<std::string, int> rows[] = {
      {folder / "missing", ENOENT}, {plain, EACCES}, {folder.path(), EACCES},
      {noFormat, ENOEXEC},          {"", ENOENT},
  };
  for (const auto& [path, number] : rows) {
    const auto result = children.run({path, {}, ChildStream::captured, ChildStream::discarded});
    ASSERT_FALSE(result) << path;
    EXPECT_EQ(result.error().domain, posixErrorDomain);
    EXPECT_EQ(result.error().code, number) << path;
    EXPECT_FALSE(result.error().description.empty());
  }
}

TEST_F(PosixChildProcessesTest, ADetachedChildOutlivesTheProgramInItsOwnSession) {
  const auto facts = folder / "facts";
  const auto script = "cat; echo $$ $(cut -d ' ' -f 6 /proc/$$/stat) > " + facts + ".new; mv " + facts +
                      ".new " + facts + "; exec sleep 60";
  {
    PosixChildProcesses others(unmapped);
    ASSERT_TRUE(others.start({"/bin/sh", {"-c", script}}));
    ASSERT_TRUE(becomesTrue([&] { return std::filesystem::exists(facts); })) << "its input is empty";
  }
  pid_t process = 0;
  pid_t session = 0;
  std::ifstream(facts) >> process >> session;
  ASSERT_GT(process, 0);
  EXPECT_EQ(session, process);
  EXPECT_EQ(::kill(process, SIGKILL), 0);
  EXPECT_EQ(::waitpid(process, nullptr, 0), process);
}

TEST_F(PosixChildProcessesTest, ReapsDetachedChildrenAndReportsThoseThatCannotBeStarted) {
  ASSERT_TRUE(children.start(shell("exit 3", ChildStream::discarded)));
  EXPECT_TRUE(becomesTrue([&] {
    siginfo_t info{};
    (void)children.run(shell("exit 0"));
    return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) != 0;
  }));
  EXPECT_EQ(children.start({folder / "missing", {}}).error().code, ENOENT);
  children.endAll();
  EXPECT_TRUE(isHostShuttingDown(children.start(shell("exit 0")).error()));
}

TEST_F(PosixChildProcessesTest, MapsThePathOfTheExecutableButNoArgument) {
  PosixChildProcesses mapped(
      [](std::string_view path) { return path == "/mac/sh" ? "/bin/sh" : "/missing"; });
  const auto result = mapped.run({"/mac/sh",
                                  {"-c", "printf '%s|' \"$@\"", "0", "/mac/sh", "a  b", "", "$HOME"},
                                  ChildStream::captured,
                                  ChildStream::discarded});
  EXPECT_EQ(result, (ChildResult{0, "/mac/sh|a  b||$HOME|"}));
}

TEST_F(PosixChildProcessesTest, ReadsFiveMegabytesAndKillsAChildThatWritesMoreThanTheLimit) {
  EXPECT_EQ(children.run(shell("head -c 5000000 /dev/zero")), (ChildResult{0, std::string(5000000, '\0')}));
  PosixChildProcesses limited(unmapped, 1000);
  const std::pair<const char*, ChildResult> rows[] = {
      {"head -c 1000 /dev/zero", {0, std::string(1000, '\0')}},
      {"head -c 1001 /dev/zero", {SIGKILL, std::string(1000, '\0')}},
      {"cat /dev/zero", {SIGKILL, std::string(1000, '\0')}},
  };
  for (const auto& [script, result] : rows) EXPECT_EQ(limited.run(shell(script)), result) << script;
}

TEST_F(PosixChildProcessesTest, PassesOutputOnWhileTheChildRuns) {
  const TemporaryFolder place;
  const auto answer = place / "answer";
  std::string output;
  const auto result = children.run(
      shell(("printf first; until test -e " + answer + "; do sleep 0.01; done; printf second").c_str()), {},
      [&](std::string_view bytes) {
        output += bytes;
        if (output == "first") place.write("answer", "");
      });
  EXPECT_EQ(result, (ChildResult{0, ""}));
  EXPECT_EQ(output, "firstsecond");
}

TEST_F(PosixChildProcessesTest, CapturesTheFirst64KiBOfStandardErrorAndDropsTheRest) {
  struct Row {
    const char* script;
    ChildStream output;
    ChildResult result;
  };
  const std::string most(65536, '\0');
  const Row rows[] = {
      {"printf out; printf err >&2; exit 3", ChildStream::captured, {3, "out", "err"}},
      {"printf lost; printf err >&2; exit 3", ChildStream::discarded, {3, "", "err"}},
      {"printf err >&2; exit 4", ChildStream::inherited, {4, "", "err"}},
      {"exec 2>&-; sleep 0.05; printf out", ChildStream::captured, {0, "out", ""}},
      {"exec >&-; sleep 0.05; printf err >&2", ChildStream::captured, {0, "", "err"}},
      {"head -c 65536 /dev/zero >&2", ChildStream::discarded, {0, "", most}},
      {"head -c 65537 /dev/zero >&2", ChildStream::discarded, {0, "", most}},
      {"head -c 5000000 /dev/zero >&2; printf end", ChildStream::captured, {0, "end", most}},
      {"timeout 0.2 cat /dev/zero >&2; exit 5", ChildStream::discarded, {5, "", most}},
      // A stream that a grandchild holds open is read for as long as the child lives.
      {"sleep 20 & echo $! > $PID; printf err >&2; exit 6", ChildStream::discarded, {6, "", "err"}},
      {"cat /dev/zero >&2 & sleep 0.2; exit 7", ChildStream::discarded, {7, "", most}},
      {"(sleep 0.2; printf out) 2>&- & exit 8", ChildStream::captured, {8, "out", ""}},
  };
  for (const auto& row : rows) {
    auto command = shell("PID=" + (folder / "pid") + "; " + row.script, row.output);
    command.error = ChildStream::captured;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(children.run(command) == row.result) << row.script;
    EXPECT_LT(std::chrono::steady_clock::now() - start, 15s) << row.script;
  }
  EXPECT_EQ(::kill(std::stoi(folder.read("pid")), SIGKILL), 0) << "the grandchild was not to be waited for";
  PosixChildProcesses limited(unmapped, 1000);
  auto command = shell("printf err >&2; cat /dev/zero");
  command.error = ChildStream::captured;
  EXPECT_EQ(limited.run(command), (ChildResult{SIGKILL, std::string(1000, '\0'), "err"}));
}

TEST_F(PosixChildProcessesTest, EndsARunOnRequest) {
  struct Row {
    std::string script;
    bool isKilled;
    std::int32_t status;
  };
  const Row rows[] = {
      {"sleep 100 & " + ready() + "wait", false, SIGTERM},
      {"trap 'exit 7' TERM; " + ready() + "while :; do sleep 0.01; done", false, 7},
      {"trap '' TERM; " + ready() + "sleep 100", true, SIGKILL},
      {"exec >&-; " + ready() + "sleep 100", true, SIGKILL},
      // The grandchild is ready once its parent has exited; it has left the group and holds the pipe.
      {"setsid sh -c 'while read -r a b c parent d < /proc/$$/stat && [ $parent = $0 ]; do :; done; " +
           ready() + "exec sleep 5' $$ & exit 8",
       true, 8},
  };
  for (const auto& row : rows) {
    std::filesystem::remove(folder / "ready");
    terminate = {};
    kill = {};
    const auto start = std::chrono::steady_clock::now();
    const auto result = runAndEnd(row.script, [&] { (row.isKilled ? kill : terminate).request_stop(); });
    EXPECT_EQ(result, (ChildResult{row.status, ""})) << row.script;
    EXPECT_LT(std::chrono::steady_clock::now() - start, 4900ms) << row.script;
  }
}

TEST_F(PosixChildProcessesTest, KillsTheProcessGroupOnRequestAndAtShutdown) {
  const FakeChildProcesses::Result killed = ChildResult{SIGKILL, ""};
  const std::pair<std::function<void()>, FakeChildProcesses::Result> ends[] = {
      {[this] { kill.request_stop(); }, killed},
      {[this] { children.endAll(); }, std::unexpected(FakeChildProcesses::endOfHost())}};
  for (const auto& [end, expected] : ends) {
    std::filesystem::remove(folder / "ready");
    const auto result = runAndEnd("sleep 100 & echo $! > " + (folder / "pid") + "; " + ready() + "wait", end);
    EXPECT_EQ(result, expected);
    const auto grandchild = "/proc/" + std::to_string(std::stoi(folder.read("pid"))) + "/cmdline";
    EXPECT_TRUE(becomesTrue([&] { return std::ifstream(grandchild).peek() == EOF; }))
        << "the grandchild still runs";
    kill = {};
  }
}

TEST_F(PosixChildProcessesTest, AKilledChildThatCannotBeReapedBlocksNoThreadAndIsReapedLater) {
  // While a process is traced its parent cannot reap it.
  const auto victim = [this] { return static_cast<pid_t>(std::stoi(folder.read("pid"))); };
  pid_t tracer = 0;
  const auto result = runAndEnd("echo $$ > " + (folder / "pid") + "; " + ready() + "exec sleep 100", [&] {
    tracer = ::fork();
    if (tracer == 0) {
      ::ptrace(PTRACE_SEIZE, victim(), nullptr, nullptr);
      folder.write("traced", "");
      ::pause();
      ::_exit(0);
    }
    EXPECT_TRUE(becomesTrue([&] { return std::filesystem::exists(folder / "traced"); }));
    kill.request_stop();
  });
  EXPECT_EQ(result, (ChildResult{SIGKILL, ""}));
  EXPECT_EQ(children.reapKilled(), 1U);
  ::kill(tracer, SIGKILL);
  EXPECT_EQ(::waitpid(tracer, nullptr, 0), tracer);
  EXPECT_TRUE(becomesTrue([&] { return children.reapKilled() == 0; }));
}

TEST_F(PosixChildProcessesTest, ShutdownTerminatesCapturedChildrenAndKillsThemAfterASecond) {
  const std::pair<std::string, std::chrono::milliseconds> rows[] = {
      {"trap ': > " + (folder / "asked") + "; exit 0' TERM; " + ready() + "while :; do sleep 0.01; done",
       0ms},
      {"trap '' TERM; " + ready() + "while :; do sleep 0.01; done", 1000ms}};
  for (const auto& [script, least] : rows) {
    PosixChildProcesses fresh(unmapped);
    std::filesystem::remove(folder / "ready");
    auto run = std::async(std::launch::async, [&] { return fresh.run(shell(script)); });
    ASSERT_TRUE(becomesTrue([&] { return std::filesystem::exists(folder / "ready"); }));
    const auto start = std::chrono::steady_clock::now();
    fresh.endAll();
    EXPECT_EQ(run.get(), std::unexpected(FakeChildProcesses::endOfHost()));
    EXPECT_GE(std::chrono::steady_clock::now() - start, least) << script;
  }
  EXPECT_TRUE(std::filesystem::exists(folder / "asked"));
}

TEST_F(PosixChildProcessesTest, ShutdownWaitsForAChildThatSharesTheTerminal) {
  const auto script = ready() + "until test -e " + (folder / "go") + "; do sleep 0.01; done; exit 4";
  auto run =
      std::async(std::launch::async, [&] { return children.run(shell(script, ChildStream::inherited)); });
  ASSERT_TRUE(becomesTrue([&] { return std::filesystem::exists(folder / "ready"); }));
  auto end = std::async(std::launch::async, [&] { children.endAll(); });
  EXPECT_EQ(end.wait_for(50ms), std::future_status::timeout);
  folder.write("go", "");
  EXPECT_EQ(run.get(), (ChildResult{4, ""}));
}

TEST_F(PosixChildProcessesTest, ShutdownNeitherKillsNorAwaitsAChildThatOutlivesTheProgram) {
  const auto outliving = [](const std::string& script) {
    auto command = shell(script, ChildStream::discarded);
    command.outlivesProgram = true;
    return command;
  };
  EXPECT_EQ(children.run(outliving("exit 3")), (ChildResult{3, ""}));
  const auto script = "echo $$ > " + (folder / "pid") + "; " + ready() + "until test -e " + (folder / "go") +
                      "; do sleep 0.01; done; : > " + (folder / "done");
  auto run = std::async(std::launch::async, [&] { return children.run(outliving(script)); });
  ASSERT_TRUE(becomesTrue([&] { return std::filesystem::exists(folder / "ready"); }));
  children.endAll();
  EXPECT_EQ(run.get(), std::unexpected(FakeChildProcesses::endOfHost()));
  EXPECT_EQ(::waitpid(std::stoi(folder.read("pid")), nullptr, WNOHANG), 0) << "it has ended";
  folder.write("go", "");
  EXPECT_EQ(::waitpid(std::stoi(folder.read("pid")), nullptr, 0), std::stoi(folder.read("pid")));
  EXPECT_TRUE(std::filesystem::exists(folder / "done"));
}

TEST_F(PosixChildProcessesTest, ConcurrentRunsKeepTheirResultsApart) {
  std::vector<std::jthread> threads;
  threads.reserve(4);
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this, thread] {
      for (int i = 0; i < 50; ++i) {
        const std::stop_source own;
        const auto text = std::to_string(thread * 50 + i);
        const auto result = children.run(
            {"/bin/sh", {"-c", "echo $0; exit $0", text}, ChildStream::captured, ChildStream::discarded},
            {own.get_token(), own.get_token()});
        EXPECT_EQ(result, (ChildResult{thread * 50 + i, text + "\n"}));
      }
    });
  }
}

TEST_F(PosixChildProcessesTest, AChildInheritsNoDescriptor) {
  const PosixMainQueue queue;
  // Descriptors that the test inherited itself are left out.
  std::string script = "for n in";
  for (int number = STDERR_FILENO + 1; number < 64; ++number) {
    const int flags = ::fcntl(number, F_GETFD);
    if (flags < 0 || (flags & FD_CLOEXEC) != 0) script.append(" ").append(std::to_string(number));
  }
  script += "; do if [ -e /proc/$$/fd/$n ]; then echo $n; fi; done";
  EXPECT_EQ(children.run(shell(script)), (ChildResult{0, ""}));
}

TEST_F(PosixChildProcessesTest, RunsWithoutFreeDescriptorsFailAndLeakNothing) {
  EXPECT_TRUE(children.run(shell("exit 0")));
  // A sanitizer opens descriptors when it first inspects an error; this run keeps none.
  EXPECT_FALSE(children.run({folder / "missing", {}, ChildStream::captured}));
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit tight{256, before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &tight);
  std::vector<Descriptor> taken;
  do {
    taken.emplace_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  } while (taken.back());
  for (int spare = 0; spare < 4; ++spare) {
    const auto result = children.run(shell("exit 0"));
    EXPECT_TRUE(!result && result.error().code == EMFILE) << spare;
    taken.pop_back();
  }
  ::setrlimit(RLIMIT_NOFILE, &before);
}

using PosixChildProcessesDeathTest = PosixChildProcessesTest;

TEST_F(PosixChildProcessesDeathTest, WorksWithClosedStandardStreamsAndIgnoredSigchld) {
  const auto runBare = [] {
    for (const int number : {0, 1, 2}) ::close(number);
    (void)std::signal(SIGCHLD, SIG_IGN);
    PosixChildProcesses bare(unmapped);
    std::_Exit(bare.run(shell("cat && printf hello && exit 9")) == ChildResult{9, "hello"} ? 0 : 1);
  };
  EXPECT_EXIT(runBare(), testing::ExitedWithCode(0), "");
}

TEST(ChildProcessesContract, ARunGivesItsOutputUnlessStoppedOrShutDownBeforeItsStart) {
  FakeChildProcesses fake;
  PosixChildProcesses real(unmapped);
  std::stop_source stop;
  stop.request_stop();
  for (ChildProcesses* children :
       {static_cast<ChildProcesses*>(&fake), static_cast<ChildProcesses*>(&real)}) {
    fake.script.emplace_back(ChildResult{7, "hello"});
    EXPECT_EQ(children->run(shell("printf hello; exit 7")), (ChildResult{7, "hello"}));
    for (const auto error : {ChildStream::captured, ChildStream::discarded}) {
      fake.script.emplace_back(ChildResult{1, "", "why"});
      const auto result =
          children->run({"/bin/sh", {"-c", "printf why >&2; exit 1"}, ChildStream::discarded, error});
      EXPECT_EQ(result, (ChildResult{1, "", error == ChildStream::captured ? "why" : ""}));
    }
    fake.script.clear();
    EXPECT_EQ(children->run(shell("sleep 100"), {stop.get_token(), {}}), (ChildResult{SIGTERM, ""}));
    EXPECT_EQ(children->run(shell("sleep 100"), {{}, stop.get_token()}), (ChildResult{SIGKILL, ""}));
  }
  fake.hostHasEnded = true;
  real.endAll();
  for (ChildProcesses* children :
       {static_cast<ChildProcesses*>(&fake), static_cast<ChildProcesses*>(&real)}) {
    EXPECT_EQ(children->run(shell("exit 0")), std::unexpected(FakeChildProcesses::endOfHost()));
  }
}

}  // namespace
}  // namespace ostrel
