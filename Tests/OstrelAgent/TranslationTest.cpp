#include "OstrelAgent/Translation.hpp"

#include <gtest/gtest.h>

#include "OstrelAgent/Copy.hpp"
#include "Tests/Fakes/FakeBundle.hpp"
#include "Tests/Fakes/FakeLog.hpp"

namespace ostrel {
namespace {

struct TranslationTest : testing::Test {
  ~TranslationTest() override { Copy::install({}); }

  std::string install() {
    installTranslation(bundle, log);
    return std::string(Copy::tooltipProtected.text());
  }

  FakeBundle bundle;
  FakeLog log;
};

TEST_F(TranslationTest, ATableThatIsDamagedAnywhereLeavesEveryTextEnglish) {
  bundle.tables["Copy"] = "\"tooltip.protected\" = \"geschützt\";\n\"status.unavailable\" \"Exit %d\";\n";
  EXPECT_EQ(install(), "Ostrel Agent: protected");
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_NE(log.lines()[0].find("line 2"), std::string::npos) << log.lines()[0];
}

TEST_F(TranslationTest, ATableThatCannotBeReadIsLoggedWithTheReason) {
  bundle.tableError = PlatformError{posixErrorDomain, 13, "Permission denied"};
  EXPECT_EQ(install(), "Ostrel Agent: protected");
  EXPECT_EQ(log.lines(),
            std::vector<std::string>{"ostrel: could not read the translated texts: Permission denied"});
}

TEST_F(TranslationTest, AnEntryWithOtherParametersIsLeftOutAloneAndLogged) {
  bundle.tables["Copy"] = "\"tooltip.protected\" = \"geschützt\";\n\"status.unavailable\" = \"Exit %@\";\n";
  EXPECT_EQ(install(), "geschützt");
  EXPECT_EQ(Copy::statusUnavailable.with(3), "agent status unavailable (exit 3)");
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_NE(log.lines()[0].find("status.unavailable"), std::string::npos) << log.lines()[0];
}

TEST_F(TranslationTest, ABundleWithoutATableSaysNothing) {
  EXPECT_EQ(install(), "Ostrel Agent: protected");
  EXPECT_TRUE(log.lines().empty());
}

}  // namespace
}  // namespace ostrel
