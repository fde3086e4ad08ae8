#include <gtest/gtest.h>

#include <cerrno>

#include "Platform/Linux/LinuxBundle.hpp"
#include "Tests/Fakes/FakeBundle.hpp"
#include "Tests/Fakes/FakeFiles.hpp"

namespace ostrel {
namespace {

const std::string app = "/Applications/OstrelAgent.app";

TEST(LanguageCandidates, FollowTheFirstSettingAndSkipWhatIsNoLanguage) {
  using Languages = std::vector<std::string>;
  struct Row {
    const char* all;
    const char* messages;
    const char* lang;
    Languages languages;
  };
  const Row rows[] = {
      {"", "", "de_AT.UTF-8", {"de-AT", "de"}},
      {"", "de_DE@euro", "fr_FR", {"de-DE", "de"}},
      {"zh_Hant_TW.UTF-8", "de", "fr", {"zh-Hant-TW", "zh-Hant", "zh"}},
      {"C", "", "de_DE.UTF-8", {}},
      {"", "", "POSIX", {}},
      {"", "", "", {}},
      {"", "", "en_GB.UTF-8", {}},
      {"", "", "de/../../x", {}},
      {"", "", "de_/etc", {}},
      {"", "", "_de", {}},
      {"", "", "d\xC3\xA9", {}},
      {"", "", "deutsch", {}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(languageCandidates(row.all, row.messages, row.lang), row.languages)
        << row.all << "|" << row.messages << "|" << row.lang;
  }
}

struct LinuxBundleTest : testing::Test {
  FakeFiles files;
  LinuxBundle bundle{files, {"de-AT", "de"}, app + "/Contents/MacOS/OstrelAgent"};

  void putTable(const std::string& language, const std::string& bytes) {
    files.put(app + "/Contents/Resources/" + language + ".lproj/Copy.strings", bytes);
  }
};

TEST_F(LinuxBundleTest, TheTableOfTheNearestLanguageWins) {
  EXPECT_EQ(bundle.localizedTable("Copy").value(), std::nullopt);
  putTable("en", "english");
  EXPECT_EQ(bundle.localizedTable("Copy").value(), std::nullopt);
  putTable("de", "german");
  EXPECT_EQ(bundle.localizedTable("Copy").value(), "german");
  putTable("de-AT", "austrian");
  EXPECT_EQ(bundle.localizedTable("Copy").value(), "austrian");
  const FakeBundle fake;
  EXPECT_EQ(fake.path(), bundle.path());
  EXPECT_EQ(fake.executablePath(), bundle.executablePath());
  EXPECT_TRUE(currentExecutablePath().ends_with("/PlatformTests"));
  EXPECT_EQ(LinuxBundle(files, {}, bundle.executablePath()).localizedTable("Copy").value(), std::nullopt);
}

TEST_F(LinuxBundleTest, AnUnreadableTableIsAnErrorWithoutFallback) {
  putTable("de", "german");
  ASSERT_TRUE(files.makeFolders(app + "/Contents/Resources/de-AT.lproj/Copy.strings"));
  const auto table = bundle.localizedTable("Copy");
  ASSERT_FALSE(table);
  EXPECT_EQ(table.error().code, EISDIR);
}

}  // namespace
}  // namespace ostrel
