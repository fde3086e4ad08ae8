#include "OstrelAgent/Daemon/HelperRunner.hpp"

#include <gtest/gtest.h>

#include <cerrno>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

constexpr const char* helperPath = "/Applications/OstrelAgent.app/Contents/Helpers/ostrel-agent-endpoint";

struct HelperRunnerTest : testing::Test {
  FakeHost host;
  HelperRunner helper{host.bundle, host.files, host.childProcesses, host.standardStreams};
};

TEST_F(HelperRunnerTest, AMissingHelperIsReportedWithItsPath) {
  host.files.put(helperPath, "#!/bin/sh\n");
  for (const int number : {EACCES, ENOENT}) {
    host.childProcesses.answer = [number](const ChildCommand&) {
      return std::unexpected(PlatformError{posixErrorDomain, number, "why"});
    };
    host.standardStreams.error.clear();
    EXPECT_EQ(helper.runHelper({"uninstall"}), 127);
    const auto captured = helper.runHelperCapturingStdout({"status", "--json"});
    EXPECT_EQ(captured.status, 127);
    EXPECT_EQ(captured.standardOutput, "");
    const auto line = "embedded ostrel-agent-endpoint not found at " + std::string(helperPath) + "\n";
    EXPECT_EQ(host.standardStreams.error, line + line);
    host.files.files.clear();
  }
}

TEST_F(HelperRunnerTest, AHelperThatCannotBeStartedIsReportedWithTheReason) {
  host.files.putExecutable(helperPath);
  const PlatformError error{posixErrorDomain, 8, "Exec format error"};
  host.childProcesses.script.emplace_back(std::unexpected(error));
  host.childProcesses.script.emplace_back(std::unexpected(error));
  EXPECT_EQ(helper.runHelper({}), 126);
  const auto captured = helper.runHelperCapturingStdout({});
  EXPECT_EQ(captured.status, 126);
  EXPECT_EQ(captured.standardOutput, "");
  host.childProcesses.hostHasEnded = true;
  EXPECT_EQ(helper.runHelper({}), 126) << "and silent after the host has shut down";
  const std::string line = "failed to run helper: Exec format error\n";
  EXPECT_EQ(host.standardStreams.error, line + line);
}

TEST_F(HelperRunnerTest, StatusArgumentsAndEveryByteOfTheHelperPassThrough) {
  host.files.putExecutable(helperPath);
  const std::vector<std::string> arguments = {"diagnostics", "", "{\"a b\":\"$HOME\"}"};
  const std::string bytes = std::string(5'000'000, 'x') + std::string("\0\xff\r\n", 4);
  for (const std::int32_t status : {0, 3, 9, 126, 127, 255}) {
    host.childProcesses.script.emplace_back(ChildResult{status, bytes});
    const auto output = helper.runHelperCapturingStdout(arguments);
    EXPECT_EQ(output.status, status);
    EXPECT_TRUE(output.standardOutput == bytes);
    host.childProcesses.script.emplace_back(ChildResult{status, ""});
    EXPECT_EQ(helper.runHelper(arguments), status);
  }
  EXPECT_EQ(host.standardStreams.error, "");
  const auto commands = host.childProcesses.commands;
  EXPECT_EQ(commands[0].output, ChildStream::captured);
  EXPECT_EQ(commands[1].output, ChildStream::inherited);
  for (const auto& command : commands) {
    EXPECT_EQ(command.arguments, arguments);
    EXPECT_EQ(command.error, ChildStream::inherited);
  }
}

}  // namespace
}  // namespace ostrel
