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

/// Records its calls.
struct Listener final : SystemExtensionDelegate {
  SystemExtensionReplacement replacementOfInstalled() override {
    events.emplace_back("replace?");
    return replacement;
  }
  void needsUserApproval() override { events.emplace_back("approval"); }
  void finished(SystemExtensionResult result) override {
    events.push_back("finished " + std::to_string(static_cast<int>(result)));
  }
  void failed(const PlatformError& error) override {
    events.push_back(error.domain + " " + std::to_string(error.code));
  }

  Words events;
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
  void setOverrides(const std::string& text) { files.put(simulatedstate::overrides, text); }

  SystemExtensionState state() {
    return systemExtensionOfFile(files.files.at(simulatedstate::systemExtension).bytes).value();
  }

  std::shared_ptr<Listener> submit(Action action) {
    auto listener = std::make_shared<Listener>();
    extensions.submit(action, "tech.brenn.ostrel-agent.sysext", listener);
    EXPECT_EQ(listener->events, Words()) << "called inside submit";
    return listener;
  }

  TemporaryFolder place;
  FakeFiles files;
  FakeClock clock;
  FakeMainQueue queue{clock};
  SimulatedSystemExtensions extensions{files, queue, place / "lock"};
};

TEST_F(SystemExtensionsTest, ARequestCompletesOrWaitsByInstalledStateAndOverrides) {
  struct Row {
    SystemExtensionState before;
    Action action;
    const char* overrides;
    Words events;
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
    SCOPED_TRACE(row.overrides + testing::PrintToString(row.events));
    put(row.before);
    setOverrides(row.overrides);
    const auto listener = submit(row.action);
    queue.runAll();
    EXPECT_EQ(listener->events, row.events);
    EXPECT_EQ(state(), row.after);
  }
}

TEST_F(SystemExtensionsTest, AnUnwantedReplacementAndAnUnknownExtensionChangeNothing) {
  put(old);
  const auto listener = submit(Action::activation);
  listener->replacement = SystemExtensionReplacement::cancel;
  extensions.submit(Action::activation, "org.example.other", listener);
  queue.runAll();
  EXPECT_EQ(listener->events,
            Words({"replace?", "OSSystemExtensionErrorDomain 11", "OSSystemExtensionErrorDomain 4"}));
  EXPECT_EQ(state(), old);
}

TEST_F(SystemExtensionsTest, AWaitingRequestEndsWhenTheStateFileChanges) {
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
    const Words events = {"approval"};
    const Words all = {"approval", word};
    const auto first = submit(Action::activation);
    const auto second = submit(Action::activation);
    queue.advance(10s);
    EXPECT_EQ(first->events, events);
    put(after);
    queue.advance(200ms);
    EXPECT_EQ(first->events, all);
    EXPECT_EQ(second->events, all);
    EXPECT_EQ(queue.countTimers(), 0U) << "nothing runs when nothing waits";
  }
}

TEST_F(SystemExtensionsTest, ADestroyedDelegateEndsTheWait) {
  auto listener = submit(Action::activation);
  queue.runAll();
  EXPECT_EQ(queue.countTimers(), 1U);
  listener.reset();
  queue.advance(200ms);
  EXPECT_EQ(queue.countTimers(), 0U);
}

TEST_F(SystemExtensionsTest, DamagedFilesMeanThatNoExtensionIsInstalled) {
  for (const auto* bytes :
       {"", "[]", "{}", R"({"installed": 4, "enabled": true, "bundled": "4", "awaiting": null})",
        R"({"installed": "4", "enabled": true, "bundled": "4", "awaiting": "tea"})", "\xff"}) {
    EXPECT_EQ(systemExtensionOfFile(bytes), std::nullopt);
    files.put(simulatedstate::systemExtension, bytes);
    const auto listener = submit(Action::activation);
    queue.runAll();
    EXPECT_EQ(listener->events, Words({"approval"})) << bytes;
  }
  files.writeError = PlatformError{posixErrorDomain, 28, "full"};
  const auto listener = submit(Action::activation);
  queue.runAll();
  EXPECT_EQ(listener->events, Words({"OSSystemExtensionErrorDomain 1"}));
}

}  // namespace
}  // namespace ostrel
