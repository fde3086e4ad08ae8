#include "OstrelAgent/MenuBar/DeviceManagementProbe.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeChildProcesses.hpp"

namespace ostrel {
namespace {

TEST(DeviceManagementProbe, OnlyAYesOfTheToolCounts) {
  const std::pair<FakeChildProcesses::Result, bool> rows[] = {
      {ChildResult{0, "Enrolled via DEP: No\nMDM enrollment: Yes (User Approved)\n"}, true},
      {ChildResult{0, "Enrolled via DEP: Yes\nMDM enrollment: No\n"}, false},
      {ChildResult{0, "mdm enrollment: yes\n"}, false},
      {ChildResult{0, ""}, false},
      {std::unexpected(PlatformError{posixErrorDomain, 2, "No such file or directory"}), false},
  };
  for (const auto& [result, isEnrolled] : rows) {
    FakeChildProcesses children;
    children.script.push_back(result);
    EXPECT_EQ(isEnrolledInDeviceManagement(children), isEnrolled) << (result ? result->output : "");
    ASSERT_EQ(children.commands.size(), 1U);
    const auto command = children.commands[0];
    EXPECT_EQ(command.executable, "/usr/bin/profiles");
    EXPECT_EQ(command.arguments, (std::vector<std::string>{"status", "-type", "enrollment"}));
    EXPECT_EQ(command.error, ChildStream::discarded);
  }
}

}  // namespace
}  // namespace ostrel
