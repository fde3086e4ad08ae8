#include <gtest/gtest.h>
#include <poll.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Linux/FileChanges.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SimulatedNetworkPath.hpp"
#include "Platform/SimulatedMac/SimulatedSystemWake.hpp"
#include "Platform/SimulatedMac/SimulatedUserNotifications.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeMainQueue.hpp"
#include "Tests/Fakes/FakeNetworkPath.hpp"
#include "Tests/Fakes/FakeSystemWake.hpp"
#include "Tests/Fakes/FakeUserNotifications.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

namespace fs = std::filesystem;

/// Overrides whose changes are reported when the test says so.
struct OverriddenEvents : testing::Test {
  void setOverrides(const std::string& text) {
    files.put(simulatedstate::overrides, text);
    if (const auto work = changed.lock()) (*work)();
  }

  FakeFiles files;
  SimulatedOverrides overrides{files, "/missing/lock"};
  std::weak_ptr<std::function<void()>> changed;
  OverridesWatch watch = [this](std::function<void()> work) {
    auto token = std::make_shared<std::function<void()>>(std::move(work));
    changed = token;
    return token;
  };
};

TEST_F(OverriddenEvents, AnOverriddenNetworkHidesTheMachinesOwn) {
  const NetworkPathUpdate machines{true, {"eth0"}};
  const NetworkPathUpdate down{false, {}};
  FakeNetworkPath real;
  SimulatedNetworkPath path(real, overrides, watch);
  std::vector<NetworkPathUpdate> updates;
  files.put(simulatedstate::overrides, R"({"network": []})");
  auto token = path.observe([&](const NetworkPathUpdate& update) { updates.push_back(update); });
  setOverrides(R"({"network": ["en0"]})");
  EXPECT_TRUE(updates.empty()) << "the machine's path comes first";
  files.put(simulatedstate::overrides, R"({"network": []})");
  real.update(machines.satisfied, machines.interfaces);
  const std::pair<const char*, NetworkPathUpdate> rows[] = {
      {R"({"network": ["en0", "en1"]})", {true, {"en0", "en1"}}},
      {"{}", machines},
      {R"({"network": []})", down},
      {R"({"network": "en0"})", machines},
      {R"({"network": []})", down},
      {R"({"network": ["en0", 1]})", machines},
      {R"({"network": []})", down},
      {R"({"network": [)", machines},
  };
  std::vector<NetworkPathUpdate> expected = {down};
  for (const auto& [text, update] : rows) {
    setOverrides(text);
    setOverrides(text);
    expected.push_back(update);
    EXPECT_EQ(updates, expected) << text;
  }
  setOverrides(R"({"network": []})");
  real.update(true, {"eth1"});
  EXPECT_EQ(updates.size(), expected.size() + 1) << "an override hides changes of the machine";
  setOverrides("{}");
  EXPECT_EQ(updates.back(), NetworkPathUpdate(true, {"eth1"}));
  token = nullptr;
  EXPECT_FALSE(real.isObserved());
  EXPECT_TRUE(changed.expired());
}

TEST_F(OverriddenEvents, AWakeOverrideFiresOnceAndNotForAnEarlierNumber) {
  FakeSystemWake real;
  SimulatedSystemWake wake(real, overrides, watch);
  int woken = 0;
  files.put(simulatedstate::overrides, R"({"wake": 5})");
  const auto token = wake.observe([&] { ++woken; });
  const std::pair<const char*, int> rows[] = {
      {R"({"wake": 5, "approval": "never"})", 0},
      {R"({"wake": 6})", 1},
      {R"({"wake": 6, "network": []})", 1},
      {R"({"wake": "tea"})", 1},
      {R"({"wake": 7)", 1},
      {"{}", 1},
      {R"({"wake": 8})", 2},
  };
  for (const auto& [text, count] : rows) {
    setOverrides(text);
    EXPECT_EQ(woken, count) << text;
  }
  real.wake();
  EXPECT_EQ(woken, 3);
}

TEST_F(OverriddenEvents, AnOverriddenAuthorizationDecidesWhatIsAskedAndShown) {
  using Authorization = NotificationAuthorization;
  struct Row {
    const char* overrides;
    Authorization read;
    int requests;
    std::size_t shown;
  };
  const Row rows[] = {
      {"{}", Authorization::authorized, 1, 1},
      {R"({"notifications": "denied"})", Authorization::denied, 0, 0},
      {R"({"notifications": "authorized"})", Authorization::authorized, 0, 1},
      {R"({"notifications": "undetermined"})", Authorization::notDetermined, 1, 1},
      {R"({"notifications": "tea"})", Authorization::authorized, 1, 1},
  };
  for (const auto& row : rows) {
    FakeClock clock;
    FakeMainQueue queue(clock);
    FakeUserNotifications shells(queue);
    SimulatedUserNotifications notifications(shells, overrides, queue);
    shells.authorization = Authorization::authorized;
    setOverrides(row.overrides);
    std::optional<Authorization> read;
    int completions = 0;
    const auto completed = [&completions](const auto& done) { completions += done ? 1 : 0; };
    notifications.readAuthorization([&read](Authorization each) { read = each; });
    notifications.requestAuthorization(completed);
    notifications.post({.identifier = "a", .title = "", .body = "", .category = ""}, completed);
    EXPECT_TRUE(!read && completions == 0) << "completions run later";
    queue.runAll();
    EXPECT_EQ(read, row.read) << row.overrides;
    EXPECT_EQ(completions, 2) << row.overrides;
    EXPECT_EQ(shells.requests, row.requests) << row.overrides;
    EXPECT_EQ(shells.posted.size(), row.shown) << row.overrides;
  }
}

TEST(FileChanges, AreReportedFromBeforeTheFileExists) {
  const TemporaryFolder place;
  PosixMainQueue queue;
  int changes = 0;
  auto token = watchFile(queue, place / "some/folder/file", [&] { ++changes; });
  // An idle program wakes only when the descriptor is readable.
  const auto isWoken = [&] {
    pollfd watched{queue.descriptor(), POLLIN, 0};
    return ::poll(&watched, 1, 0) > 0;
  };
  const auto file = place / "some/folder/file";
  const std::pair<std::function<void()>, int> rows[] = {
      {[&] { place.write("some/folder/file", "written"); }, 1},
      {[&] { place.write("some/folder/other", ""); }, 1},
      {[&] { fs::rename(place / "some/folder/other", file); }, 2},
      {[&] { std::ifstream(file).get(); }, 2},
      {[&] { fs::remove(file); }, 3},
  };
  for (const auto& [act, count] : rows) {
    const int before = changes;
    act();
    EXPECT_TRUE(isWoken() || count == before);
    EXPECT_EQ(changes, before) << "never inside the act";
    queue.processDueWork();
    EXPECT_EQ(changes, count);
    EXPECT_FALSE(isWoken());
  }
  token = nullptr;
  place.write("some/folder/file", "");
  queue.processDueWork();
  EXPECT_EQ(changes, 3);
  const auto blocked = place.write("blocked", "a file");
  token = watchFile(queue, blocked + "/file", [] { ADD_FAILURE() << "there is no such folder"; });
  place.write("blocked", "changed");
  queue.processDueWork();
}

}  // namespace
}  // namespace ostrel
