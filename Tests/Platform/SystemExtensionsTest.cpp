#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SimulatedSystemExtensions.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeMainQueue.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Action = SystemExtensionAction;
using Words = std::vector<std::string>;

/// Notes what it is told.
struct Listener final : SystemExtensionDelegate {
  SystemExtensionReplacement replacementOfInstalled() override {
    told.emplace_back("replace?");
    return replacement;
  }
  void needsUserApproval() override { told.emplace_back("approval"); }
  void finished(SystemExtensionResult result) override {
    told.push_back("finished " + std::to_string(static_cast<int>(result)));
  }
  void failed(const PlatformError& error) override {
    told.push_back(error.domain + " " + std::to_string(error.code));
  }

  Words told;
  SystemExtensionReplacement replacement = SystemExtensionReplacement::replace;
};

const SystemExtensionState none;
const SystemExtensionState old{"4.11.0", true, "4.12.0", std::nullopt};
const SystemExtensionState disabled{"4.12.0", false, "4.12.0", std::nullopt};
const SystemExtensionState active{"4.12.0", true, "4.12.0", std::nullopt};

SystemExtensionState awaiting(SystemExtensionState state, Action action) {
  state.awaiting = action;
  return state;
}

struct SystemExtensionsTest : testing::Test {
  void put(const SystemExtensionState& state) {
    files.put(simulatedstate::systemExtension, fileOfSystemExtension(state));
  }
  void order(const std::string& orders) { files.put(simulatedstate::overrides, orders); }

  SystemExtensionState state() {
    return systemExtensionOfFile(files.files.at(simulatedstate::systemExtension).bytes).value();
  }

  std::shared_ptr<Listener> submit(Action action) {
    auto listener = std::make_shared<Listener>();
    extensions.submit(action, "tech.brenn.ostrel-agent.sysext", listener);
    EXPECT_EQ(listener->told, Words()) << "told inside submit";
    return listener;
  }

  TemporaryFolder place;
  FakeFiles files;
  FakeClock clock;
  FakeMainQueue queue{clock};
  SimulatedSystemExtensions extensions{files, queue, place / "lock"};
};

TEST_F(SystemExtensionsTest, ARequestIsCarriedOutOrWaitsByWhatIsInstalledAndOrdered) {
  struct Row {
    SystemExtensionState before;
    Action action;
    const char* orders;
    Words told;
    SystemExtensionState after;
  };
  const char* always = R"({"approval": "always"})";
  const Row rows[] = {
      {none, Action::activation, "", {"approval"}, awaiting(none, Action::activation)},
      {disabled, Action::activation, "", {"approval"}, awaiting(disabled, Action::activation)},
      {none, Action::activation, R"({"approval": "never"})", {"finished 0"}, active},
      {active, Action::activation, always, {"finished 0"}, active},
      {old, Action::activation, "", {"replace?", "finished 0"}, active},
      {old, Action::activation, always, {"replace?", "approval"}, awaiting(old, Action::activation)},
      {old, Action::activation, R"({"result": "after-reboot"})", {"replace?", "finished 1"}, active},
      {active, Action::deactivation, "", {"finished 0"}, none},
      {active, Action::deactivation, always, {"approval"}, awaiting(active, Action::deactivation)},
      {none, Action::deactivation, always, {"OSSystemExtensionErrorDomain 4"}, none},
      {none,
       Action::activation,
       R"({"fail-requests": {"count": 1, "domain": "D", "code": 9}})",
       {"D 9"},
       none},
      {active, Action::activation, R"({"callbacks": "twice"})", {"finished 0", "finished 0"}, active},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.orders + testing::PrintToString(row.told));
    put(row.before);
    order(row.orders);
    const auto listener = submit(row.action);
    queue.runAll();
    EXPECT_EQ(listener->told, row.told);
    EXPECT_EQ(state(), row.after);
  }
}

TEST_F(SystemExtensionsTest, AnUnwantedReplacementAndAnUnknownExtensionChangeNothing) {
  put(old);
  const auto listener = submit(Action::activation);
  listener->replacement = SystemExtensionReplacement::cancel;
  extensions.submit(Action::activation, "org.example.other", listener);
  queue.runAll();
  EXPECT_EQ(listener->told,
            Words({"replace?", "OSSystemExtensionErrorDomain 11", "OSSystemExtensionErrorDomain 4"}));
  EXPECT_EQ(state(), old);
}

TEST_F(SystemExtensionsTest, AWaitEndsWithWhatTheFileComesToTell) {
  struct Row {
    SystemExtensionState before;
    SystemExtensionState after;
    const char* word;
  };
  const char* denied = "OSSystemExtensionErrorDomain 13";
  const char* superseded = "OSSystemExtensionErrorDomain 12";
  const Row rows[] = {
      {none, active, "finished 0"}, {none, none, denied},
      {disabled, disabled, denied}, {none, awaiting(none, Action::deactivation), superseded},
      {disabled, none, superseded},
  };
  for (const auto& [before, after, word] : rows) {
    put(before);
    const Words told = {"approval"};
    const Words all = {"approval", word};
    const auto first = submit(Action::activation);
    const auto second = submit(Action::activation);
    queue.advance(10s);
    EXPECT_EQ(first->told, told);
    put(after);
    queue.advance(200ms);
    EXPECT_EQ(first->told, all);
    EXPECT_EQ(second->told, all);
    EXPECT_EQ(queue.countTimers(), 0U) << "nothing runs when nothing waits";
  }
}

TEST_F(SystemExtensionsTest, ADelegateThatIsGoneIsWaitedForNoMore) {
  auto listener = submit(Action::activation);
  queue.runAll();
  EXPECT_EQ(queue.countTimers(), 1U);
  listener.reset();
  queue.advance(200ms);
  EXPECT_EQ(queue.countTimers(), 0U);
}

TEST_F(SystemExtensionsTest, DamagedFilesAreAMacWithoutTheExtension) {
  for (const auto* bytes :
       {"", "[]", "{}", R"({"installed": 4, "enabled": true, "bundled": "4", "awaiting": null})",
        R"({"installed": "4", "enabled": true, "bundled": "4", "awaiting": "tea"})", "\xff"}) {
    EXPECT_EQ(systemExtensionOfFile(bytes), std::nullopt);
    files.put(simulatedstate::systemExtension, bytes);
    const auto listener = submit(Action::activation);
    queue.runAll();
    EXPECT_EQ(listener->told, Words({"approval"})) << bytes;
  }
  files.writeError = PlatformError{posixErrorDomain, 28, "full"};
  const auto listener = submit(Action::activation);
  queue.runAll();
  EXPECT_EQ(listener->told, Words({"OSSystemExtensionErrorDomain 1"}));
}

}  // namespace
}  // namespace ostrel
