#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

/// Sets or removes a variable for one test.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    set(value);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { set(before_ ? before_->c_str() : nullptr); }

  void set(const char* value) { value == nullptr ? ::unsetenv(name_) : ::setenv(name_, value, 1); }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

TEST(HostRoot, MapsTheSystemsPlacesAndNothingElse) {
  const HostRoot root("/root/", "/Users/ana/", "/var/tmp", "/Users/ana/build/OstrelAgent.app");
  const std::pair<const char*, const char*> rows[] = {
      {"/Library/Application Support/x", "/root/Library/Application Support/x"},
      {"/LibraryOfMine/x", "/LibraryOfMine/x"},
      {"/usr/bin/security", "/root/usr/bin/security"},
      {"/usr/bin/security2", "/usr/bin/security2"},
      {"/Users/ana/.npmrc", "/root/Users/ana/.npmrc"},
      {"/Users/anabel/.npmrc", "/Users/anabel/.npmrc"},
      {"/var/tmp/x", "/root/var/tmp/x"},
      {"/Users/ana/build/OstrelAgent.app/Contents/Helpers/h",
       "/Users/ana/build/OstrelAgent.app/Contents/Helpers/h"},
      {"/Users/ana/build/OstrelAgent.app2", "/root/Users/ana/build/OstrelAgent.app2"},
      {"", ""},
  };
  for (const auto& [path, real] : rows) EXPECT_EQ(root.realPath(path), real);
  EXPECT_EQ(HostRoot("/root", "/", "/tmp", "").realPath("/etc/hosts"), "/etc/hosts");
}

TEST(HostRoot, IsFoundByTheEnvironmentWithOrWithoutAHome) {
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
  const Variable temporary("TMPDIR", nullptr);
  for (const auto& row : rows) {
    const Variable home("HOME", row.home);
    const Variable root("OSTREL_HOST_ROOT", row.root);
    const Variable state("XDG_STATE_HOME", row.state);
    EXPECT_EQ(HostRoot::fromEnvironment("/app").path(), row.path);
  }
  for (const auto* value : {static_cast<const char*>(nullptr), "", "relative"}) {
    const Variable home("HOME", value);
    const auto root = HostRoot::fromEnvironment("/app");
    EXPECT_TRUE(root.home().starts_with('/')) << root.home();
    EXPECT_TRUE(root.path().starts_with('/')) << root.path();
  }
}

}  // namespace
}  // namespace ostrel
