#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

/// Sets or removes a variable, which no other test of this program reads.
void setVariable(const char* name, const char* value) {
  value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
}

TEST(HostRoot, MapsOnlyTheFoldersAndToolsOfTheSystem) {
  const HostRoot root("/root/", "/Users/ana/", "/var/tmp", "/Users/ana/build/OstrelAgent.app");
  const std::pair<const char*, const char*> rows[] = {
      {"/Library/Application Support/x", "/root/Library/Application Support/x"},
      {"/LibraryOfMine/x", "/LibraryOfMine/x"},
      {"/usr/bin/security", "/root/usr/bin/security"},
      {"/usr/bin/security2", "/usr/bin/security2"},
      {"/usr/bin/podman", "/root/usr/bin/podman"},
      {"/usr/bin/podman/x", "/usr/bin/podman/x"},
      {"/usr/bin/openssl", "/usr/bin/openssl"},
      {"/opt/homebrew/bin/any", "/root/opt/homebrew/bin/any"},
      {"/opt/homebrew/bin/folder/any", "/opt/homebrew/bin/folder/any"},
      {"/usr/local/bin/any", "/root/usr/local/bin/any"},
      {"/usr/local/bin", "/usr/local/bin"},
      {"/usr/local/bin/", "/usr/local/bin/"},
      {"/usr/local/lib/any", "/usr/local/lib/any"},
      {"/Users/ana/.npmrc", "/root/Users/ana/.npmrc"},
      {"/Users/anabel/.npmrc", "/Users/anabel/.npmrc"},
      {"/var/tmp/x", "/root/var/tmp/x"},
      {"/Users/ana/build/OstrelAgent.app/Contents/Helpers/h",
       "/Users/ana/build/OstrelAgent.app/Contents/Helpers/h"},
      {"/Users/ana/build/OstrelAgent.app2", "/root/Users/ana/build/OstrelAgent.app2"},
      {"", ""},
  };
  for (const auto& [path, real] : rows) EXPECT_EQ(root.realPath(path), real);
  const HostRoot homeless("/root", "/", "/tmp", "");
  EXPECT_EQ(homeless.realPath("/etc/hosts"), "/etc/hosts");
  EXPECT_EQ(homeless.realPath(homeless.home() + "/Library/x"), "/root/Library/x");
}

TEST(HostRoot, FollowsTheEnvironmentWithOrWithoutAHome) {
  struct Row {
    const char* home;
    const char* root;
    const char* state;
    std::string path;
  };
  const auto current = std::filesystem::current_path().string();
  const Row rows[] = {
      {"/home/ana", "/mac/", nullptr, "/mac"},
      {"/home/ana", "./mac/", nullptr, current + "/mac"},
      {"/home/ana", "", nullptr, "/home/ana/.local/state/ostrel-agent/host-root"},
      {"/home/ana/", nullptr, "/state", "/state/ostrel-agent/host-root"},
      {"/home/ana", nullptr, "relative", "/home/ana/.local/state/ostrel-agent/host-root"},
      {"/", nullptr, nullptr, "/tmp/ostrel-agent-" + std::to_string(::getuid()) + "/host-root"},
  };
  setVariable("TMPDIR", nullptr);
  for (const auto& row : rows) {
    setVariable("HOME", row.home);
    setVariable("OSTREL_HOST_ROOT", row.root);
    setVariable("XDG_STATE_HOME", row.state);
    EXPECT_EQ(HostRoot::fromEnvironment("/app").path(), row.path);
  }
  for (const auto* value : {static_cast<const char*>(nullptr), "", "relative"}) {
    setVariable("HOME", value);
    const auto root = HostRoot::fromEnvironment("/app");
    EXPECT_TRUE(root.home().starts_with('/')) << root.home();
    EXPECT_TRUE(root.path().starts_with('/')) << root.path();
  }
}

}  // namespace
}  // namespace ostrel
