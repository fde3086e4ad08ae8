#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>

#include "Platform/Posix/PosixClock.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

template <class Value>
int codeOf(const std::expected<Value, PlatformError>& result) {
  if (result) return 0;
  EXPECT_EQ(result.error().domain, posixErrorDomain);
  return result.error().code;
}

/// Files beneath a folder of the test, by the path map that a simulated Mac uses.
struct PosixFilesTest : testing::Test {
  TemporaryFolder folder;
  PosixFiles files{[root = folder.path()](std::string_view path) { return root + std::string(path); }};
};

using FilesContract = PosixFilesTest;

TEST_F(FilesContract, AFileIsReadAsWrittenUntilItIsRemoved) {
  FakeFiles fake;
  for (Files* each : {static_cast<Files*>(&files), static_cast<Files*>(&fake)}) {
    ASSERT_EQ(codeOf(each->makeFolders("/a/b")), 0);
    ASSERT_EQ(codeOf(each->makeFolders("/a/b")), 0);
    for (const auto& bytes : {std::string("first\0\xff", 7), std::string(), std::string(3000000, 'x')}) {
      ASSERT_EQ(codeOf(each->writeAtomically("/a/b/file", bytes)), 0);
      EXPECT_EQ(each->read("/a/b/file"), bytes);
    }
    EXPECT_TRUE(each->exists("/a/b/file"));
    const auto stamp = each->stamp("/a/b/file");
    EXPECT_TRUE(stamp);
    EXPECT_EQ(each->stamp("/a/b/file"), stamp);
    ASSERT_EQ(codeOf(each->writeAtomically("/a/b/file", std::string(3000000, 'y'))), 0);
    EXPECT_NE(each->stamp("/a/b/file"), stamp) << "replaced by a file of equal size";
    EXPECT_FALSE(each->stamp("/a/b")) << "a folder";
    EXPECT_FALSE(each->isExecutableFile("/a/b/file"));
    EXPECT_EQ(codeOf(each->remove("/a/b/file")), 0);
    EXPECT_EQ(codeOf(each->remove("/a/b/file")), 0);
    EXPECT_FALSE(each->exists("/a/b/file"));
    EXPECT_FALSE(each->stamp("/a/b/file"));
  }
}

TEST_F(FilesContract, AFolderOrFileInTheWayIsADistinctError) {
  FakeFiles fake;
  for (Files* each : {static_cast<Files*>(&files), static_cast<Files*>(&fake)}) {
    ASSERT_EQ(codeOf(each->makeFolders("/folder")), 0);
    ASSERT_EQ(codeOf(each->writeAtomically("/file", "kept")), 0);
    EXPECT_TRUE(each->exists("/folder"));
    EXPECT_FALSE(each->isExecutableFile("/folder"));
    EXPECT_EQ(codeOf(each->read("/folder")), EISDIR);
    EXPECT_EQ(codeOf(each->writeAtomically("/folder", "")), EISDIR);
    EXPECT_EQ(codeOf(each->remove("/folder")), EISDIR);
    EXPECT_EQ(codeOf(each->read("/missing/file")), ENOENT);
    EXPECT_EQ(codeOf(each->writeAtomically("/missing/file", "")), ENOENT);
    EXPECT_EQ(codeOf(each->remove("/missing/file")), 0);
    EXPECT_EQ(codeOf(each->makeFolders("/file")), ENOTDIR);
    EXPECT_EQ(codeOf(each->makeFolders("/file/below")), ENOTDIR);
    EXPECT_EQ(each->read("/file"), "kept");
  }
}

TEST_F(PosixFilesTest, AFailedWriteLeavesTheOldFileAndNothingElse) {
  folder.write("file", "old");
  // A file may not grow past the limit, as on a full disk; the signal that says so is ignored.
  const auto signal = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit tight{1000, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &tight);
  const auto written = files.writeAtomically("/file", std::string(5000, 'x'));
  const auto created = files.createPrivately("/new", std::string(5000, 'x'));
  ::setrlimit(RLIMIT_FSIZE, &before);
  (void)std::signal(SIGXFSZ, signal);
  EXPECT_EQ(codeOf(written), EFBIG);
  EXPECT_EQ(codeOf(created), EFBIG);
  EXPECT_EQ(codeOf(files.writeAtomically("/" + std::string(300, 'n'), "new")), ENAMETOOLONG);
  EXPECT_EQ(folder.read("file"), "old");
  const std::string longest = "/" + std::string(255, 'n');
  EXPECT_EQ(codeOf(files.writeAtomically(longest, "new")), 0);
  EXPECT_EQ(files.read(longest), "new");
  using Folder = std::filesystem::directory_iterator;
  EXPECT_EQ(std::distance(Folder(folder.path()), Folder()), 2) << "no temporary file is left";
}

TEST_F(PosixFilesTest, AReadOnlyFileIsReplacedByEveryWrite) {
  const auto path = folder.write("file", "old");
  ::chmod(path.c_str(), 0444);
  using Folder = std::filesystem::directory_iterator;
  for (const auto& bytes :
       {std::string("longest of all"), std::string(), std::string("l"), std::string("z")}) {
    const auto hourAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(path, hourAgo);
    std::ifstream reader(path);
    const auto before = folder.read("file");
    ASSERT_EQ(codeOf(files.writeAtomically("/file", bytes)), 0);
    EXPECT_EQ(folder.read("file"), bytes);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), before)
        << "replaced while it was read";
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U) << "a user other than root could not write it again";
    EXPECT_EQ(std::distance(Folder(folder.path()), Folder()), 1) << "nothing is left beside it";
  }
}

TEST_F(PosixFilesTest, AFileIsPrivateAndALinkToItStaysALink) {
  const auto target = folder.write("dotfiles/settings", "old");
  std::filesystem::create_symlink(target, folder / "settings");
  EXPECT_EQ(codeOf(files.writeAtomically("/settings", "new")), 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "settings"));
  EXPECT_EQ(folder.read("dotfiles/settings"), "new");
  EXPECT_EQ(std::filesystem::status(target).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  std::filesystem::create_symlink(folder / "missing", folder / "dangling");
  EXPECT_EQ(codeOf(files.writeAtomically("/dangling", "new")), ENOENT);
}

TEST_F(FilesContract, CreatingPrivatelyNeverReplacesAFile) {
  FakeFiles fake;
  for (Files* each : {static_cast<Files*>(&files), static_cast<Files*>(&fake)}) {
    ASSERT_EQ(codeOf(each->makeFolders("/a")), 0);
    EXPECT_EQ(codeOf(each->createPrivately("/a/file", "first")), 0);
    EXPECT_EQ(codeOf(each->createPrivately("/a/file", "second")), EEXIST);
    EXPECT_EQ(each->read("/a/file"), "first");
    EXPECT_EQ(codeOf(each->createPrivately("/a", "")), EEXIST);
    EXPECT_EQ(codeOf(each->createPrivately("/missing/file", "")), ENOENT);
  }
  std::filesystem::create_symlink(folder / "elsewhere", folder / "link");
  EXPECT_EQ(codeOf(files.createPrivately("/link", "")), EEXIST);
  EXPECT_FALSE(files.exists("/elsewhere"));
  struct stat status {};
  ASSERT_EQ(::stat((folder / "a/file").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(PosixFilesTest, KnowsExecutablesModificationTimesAndPathsBelowAFile) {
  const auto path = folder.write("tool", "");
  ::chmod(path.c_str(), 0755);
  EXPECT_TRUE(files.isExecutableFile("/tool"));
  const auto age = PosixClock().now() - files.stamp("/tool").value_or(FileStamp()).modified;
  EXPECT_LT(std::chrono::abs(age), std::chrono::minutes(1));
  EXPECT_EQ(codeOf(files.read("/tool/below")), ENOTDIR);
  EXPECT_EQ(codeOf(files.writeAtomically("/tool/below", "")), ENOTDIR);
  EXPECT_EQ(codeOf(files.remove("/tool/below")), ENOTDIR);
}

TEST_F(PosixFilesTest, ReadsOnlyPlainFilesAndNeverWaitsForAPipe) {
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(codeOf(files.read("/pipe")), EINVAL);
  EXPECT_EQ(codeOf(files.read("/" + std::string(300, 'n'))), ENAMETOOLONG);
  PosixFiles unmapped([](std::string_view path) { return std::string(path); });
  EXPECT_EQ(codeOf(unmapped.read("/dev/zero")), EINVAL);
  EXPECT_TRUE(unmapped.read("/proc/self/status").value().starts_with("Name:"));
  EXPECT_NE(codeOf(unmapped.writeAtomically("/proc/ostrel", "new")), 0);
}

}  // namespace
}  // namespace ostrel
