#include "Platform/Posix/PlugIn.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <vector>

#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

namespace fs = std::filesystem;

struct Table {
  const char* build;
  int number;
};

std::string reasonOf(const std::string& path, const char* symbol = "testPlugIn",
                     const char* build = "this build") {
  const auto plugIn = loadPlugIn(path, symbol, build);
  return plugIn ? "" : plugIn.error();
}

TEST(PlugIn, GivesOnlyTheTableOfItsOwnBuild) {
  const auto plugIn = loadPlugIn(TEST_PLUG_IN, "testPlugIn", "this build");
  ASSERT_TRUE(plugIn) << plugIn.error();
  EXPECT_EQ(static_cast<const Table*>(*plugIn)->number, 42);
  for (const char* build : {"", "this buil", "this build ", "another"}) {
    EXPECT_EQ(reasonOf(TEST_PLUG_IN, "testPlugIn", build),
              "the plug-in " TEST_PLUG_IN " cannot be loaded: it belongs to another build");
  }
  EXPECT_NE(reasonOf(TEST_PLUG_IN, "namelessPlugIn"), "");
  EXPECT_NE(reasonOf(TEST_PLUG_IN, "otherPlugIn").find("otherPlugIn"), std::string::npos);
}

TEST(PlugIn, IsLoadedOnlyFromAnAbsolutePath) {
  const auto before = fs::current_path();
  fs::current_path(fs::path(TEST_PLUG_IN).parent_path());
  const auto name = fs::path(TEST_PLUG_IN).filename().string();
  for (const auto& path : {name, "./" + name, std::string(), std::string("libc.so.6")}) {
    EXPECT_NE(reasonOf(path).find("not absolute"), std::string::npos) << path;
  }
  fs::current_path(before);
}

TEST(PlugIn, DamagedFilesAreErrors) {
  const TemporaryFolder folder;
  fs::copy_file(TEST_PLUG_IN, folder / "whole.so");
  const auto bytes = folder.read("whole.so");
  ASSERT_GT(bytes.size(), 10000U);
  EXPECT_NE(reasonOf(folder / "missing.so"), "");
  EXPECT_NE(reasonOf(folder.path()), "");
  EXPECT_NE(reasonOf(folder.write("text.so", "#!/bin/sh\necho plug-in\n")), "");
  std::vector<std::size_t> lengths = {0, 1, 16, 63, 64, 200, 600};
  for (std::size_t length = 1000; length < bytes.size(); length += bytes.size() / 40) {
    lengths.push_back(length);
  }
  lengths.push_back(bytes.size() - 1);
  for (const auto length : lengths) {
    // Each has its own name, since a loaded library stays loaded.
    const auto name = "cut-" + std::to_string(length) + ".so";
    EXPECT_NE(reasonOf(folder.write(name, bytes.substr(0, length))), "") << length;
  }
  ASSERT_EQ(::mkfifo((folder / "pipe.so").c_str(), 0600), 0);
  EXPECT_NE(reasonOf(folder / "pipe.so"), "");
}

}  // namespace
}  // namespace ostrel
