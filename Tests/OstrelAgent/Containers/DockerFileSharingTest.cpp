#include "OstrelAgent/Containers/DockerFileSharing.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeFiles.hpp"

namespace ostrel {
namespace {

constexpr const char* store = "/Users/robin/Library/Group Containers/group.com.docker/settings-store.json";
constexpr const char* settings = "/Users/robin/Library/Group Containers/group.com.docker/settings.json";
constexpr const char* sharing = R"({"filesharingDirectories": ["/Library"]})";
constexpr const char* notSharing = R"({"filesharingDirectories": ["/Users"]})";

std::optional<bool> sharesLibrary(const Files& files) {
  std::vector<std::optional<std::string>> contents;
  for (const auto& path : DockerFileSharing::settingsFiles("/Users/robin")) {
    const auto bytes = files.read(path);
    contents.push_back(bytes ? std::optional(*bytes) : std::nullopt);
  }
  return DockerFileSharing::sharesLibrary(contents);
}

TEST(DockerFileSharing, CoversTheBundleFromItsFolderUpwards) {
  const std::map<std::string, std::optional<bool>> cases = {
      {R"(["/Users", "/Library"])", true},
      {R"(["/Library/"])", true},
      {R"([""])", false},
      {R"("/Library")", std::nullopt},
      {R"(["/"])", true},
      {R"(["/Library/Application Support/ostrel-agent-endpoint-trust/"])", true},
      {R"([3, null, ["/"], "/Library"])", true},
      {R"(["/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem"])", false},
      {R"(["/Library/Application Support/ostrel-agent-endpoint"])", false},
      {R"(["/Lib", "/library", "Library", "/Library//"])", false},
      {R"({"0": "/Library"})", std::nullopt},
  };
  for (const auto& [list, shares] : cases) {
    FakeFiles files;
    files.put(store, R"({"filesharingDirectories": )" + list + "}");
    EXPECT_EQ(sharesLibrary(files), shares) << list;
  }
}

TEST(DockerFileSharing, IsReadFromTheFirstUsableFile) {
  const std::map<std::string, std::optional<bool>> answers = {
      {notSharing, false},        {"{}", std::nullopt},    {R"({"filesharingDirectories": 1})", std::nullopt},
      {R"({"filesharing)", true}, {R"(["/Users"])", true}, {"{\"a\": \"\xFF\"}", true},
  };
  FakeFiles files;
  files.put(settings, sharing);
  for (const auto& [text, shares] : answers) {
    files.put(store, text);
    EXPECT_EQ(sharesLibrary(files), shares) << text;
  }
  files.put(settings, "[]");
  EXPECT_EQ(sharesLibrary(files), std::nullopt);
}

TEST(DockerFileSharing, SkipsAFolderAndUnreadableFiles) {
  FakeFiles files;
  files.put(settings, sharing);
  (void)files.makeFolders(store);
  EXPECT_EQ(sharesLibrary(files), true);
  files.readError = PlatformError{posixErrorDomain, EACCES, "Permission denied"};
  EXPECT_EQ(sharesLibrary(files), std::nullopt);
}

}  // namespace
}  // namespace ostrel
