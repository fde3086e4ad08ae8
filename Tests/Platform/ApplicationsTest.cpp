#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "Platform/Linux/LinuxWorkspace.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SimulatedRunningProcesses.hpp"
#include "Platform/SimulatedMac/SimulatedWorkspace.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeRunningProcesses.hpp"
#include "Tests/Fakes/FakeWorkspace.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

using Names = std::vector<std::string>;
using Running = std::vector<RunningApplication>;

struct ApplicationsTest : testing::Test {
  FakeFiles files;
  SimulatedApplications applications{files};
  LinuxWorkspace machines{"/program"};
  SimulatedWorkspace workspace{machines, applications};
  SimulatedRunningProcesses processes{applications};
};

/// Sets the same state on the fakes and on the simulated Mac.
struct ApplicationsContract : ApplicationsTest {
  void set(const ApplicationsState& state) {
    fakeWorkspace.applications = state.running;
    fakeWorkspace.installed = state.installed;
    fakeProcesses.processes = state.processes;
    files.put(simulatedstate::applications, fileOfApplications(state));
  }

  FakeWorkspace fakeWorkspace;
  FakeRunningProcesses fakeProcesses;
  const std::vector<const Workspace*> workspaces = {&workspace, &fakeWorkspace};
  const std::vector<const RunningProcesses*> tables = {&processes, &fakeProcesses};
};

TEST_F(ApplicationsContract, RunningApplicationsAreGivenWithWhatIsKnownOfThem) {
  const auto at = [](std::int64_t time) { return Date(std::chrono::milliseconds(time)); };
  const Running rows[] = {
      {},
      {{std::nullopt, at(5)}, {std::nullopt, std::nullopt}},
      {{"com.one", at(-1)}, {"com.one", at(1735813200123)}, {"com.one", std::nullopt}},
  };
  for (const auto* each : workspaces) EXPECT_EQ(each->runningApplications(), Running());
  for (const auto& row : rows) {
    set({.installed = {}, .running = row, .processes = {}});
    for (const auto* each : workspaces) EXPECT_EQ(each->runningApplications(), row);
  }
}

TEST_F(ApplicationsContract, AnApplicationIsFoundByItsIdentifierOrAPrefix) {
  struct Row {
    const char* text;
    bool isIdentifier;
    bool isPrefix;
  };
  const Row rows[] = {
      {"com.one.app", true, true},    {"com.one", false, true},
      {"com.one.app2", false, false}, {"com.one.app.x", false, false},
      {"COM.one", false, false},      {"", false, true},
      {"zz", false, false},           {"com.two", true, true},
  };
  set({.installed = {"com.one.app", "com.two"}, .running = {{"zz", {}}}, .processes = {"zz"}});
  for (const auto* each : workspaces) {
    for (const auto& row : rows) {
      EXPECT_EQ(each->hasApplication(row.text), row.isIdentifier) << row.text;
      EXPECT_EQ(each->hasApplicationWithPrefix(row.text), row.isPrefix) << row.text;
    }
  }
  set({});
  for (const auto* each : workspaces) EXPECT_FALSE(each->hasApplicationWithPrefix(""));
}

TEST_F(ApplicationsContract, ProcessNamesAreCutAndKeepOrderAndDuplicates) {
  const std::pair<Names, Names> rows[] = {
      {{}, {}},
      {{"b", "a", "b"}, {"b", "a", "b"}},
      {{"exactly-sixteen-", "more-than-sixteen"}, {"exactly-sixteen-", "more-than-sixtee"}},
      {Names(5000, "process"), Names(5000, "process")},
  };
  for (const auto& [names, given] : rows) {
    set({.installed = {}, .running = {}, .processes = names});
    for (const auto* each : tables) EXPECT_EQ(each->names(), given);
  }
}

TEST_F(ApplicationsTest, DamagedEntriesAreSkippedAndADamagedFileIsEmpty) {
  files.put(simulatedstate::applications,
            R"({"installed": ["a", 7, null], "processes": ["p", {}, "p"],
                "running": [7, {"identifier": 7}, {}, {"identifier": null, "launched": 5},
                            {"identifier": "b", "launched": "tea"}, {"identifier": "c", "launched": 1.5},
                            {"identifier": "d", "launched": 18446744073709551615}]})");
  const ApplicationsState expected{.installed = {"a"},
                                   .running = {{std::nullopt, std::nullopt},
                                               {std::nullopt, Date(std::chrono::milliseconds(5))},
                                               {"b", std::nullopt},
                                               {"c", std::nullopt},
                                               {"d", std::nullopt}},
                                   .processes = {"p", "p"}};
  EXPECT_EQ(*applications.current(), expected);
  for (const auto& bytes : {std::string(), std::string("[]"), std::string(R"({"installed": ["a")"),
                            std::string(R"({"installed": {}, "running": 1, "processes": "p"})"),
                            std::string("\xff"), std::string(100000, '[')}) {
    files.put(simulatedstate::applications, bytes);
    EXPECT_EQ(*applications.current(), ApplicationsState()) << bytes.substr(0, 40);
  }
}

TEST_F(ApplicationsTest, AnUnchangedFileIsReadOnceAndAFailedReadIsTriedAgain) {
  files.put(simulatedstate::applications, R"({"processes": ["p"]})");
  files.readError = PlatformError{posixErrorDomain, EACCES, "denied"};
  EXPECT_EQ(processes.names(), Names());
  files.readError.reset();
  files.reads.clear();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(processes.names(), Names({"p"}));
  EXPECT_EQ(files.reads[simulatedstate::applications], 1);
}

TEST(SimulatedApplications, AReplacedOrRemovedFileIsNoticedAtOnce) {
  const TemporaryFolder place;
  PosixFiles files([&](std::string_view path) { return place.path() + std::string(path); });
  const std::string path = simulatedstate::applications;
  ASSERT_TRUE(files.makeFolders(path.substr(0, path.rfind('/'))));
  const SimulatedApplications applications(files);
  for (const auto* name : {"a", "b", "a", "c"}) {
    const ApplicationsState state{.installed = {name}, .running = {}, .processes = {}};
    ASSERT_TRUE(files.writeAtomically(path, fileOfApplications(state)));
    EXPECT_EQ(*applications.current(), state);
  }
  ASSERT_TRUE(files.remove(path));
  EXPECT_EQ(*applications.current(), ApplicationsState());
}

}  // namespace
}  // namespace ostrel
