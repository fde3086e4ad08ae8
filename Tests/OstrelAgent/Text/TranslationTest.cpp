#include "OstrelAgent/Text/Translation.hpp"

#include <gtest/gtest.h>

#include "OstrelAgent/Text/Copy.hpp"
#include "Tests/Fakes/FakeBundle.hpp"
#include "Tests/Fakes/FakeLog.hpp"

namespace ostrel {
namespace {

TEST(Translation, AnUnusableTableIsLoggedAndItsTextsAreEnglish) {
  struct Row {
    const char* table;  // none when it cannot be read
    const char* text;
    const char* logged;
  };
  constexpr const char* english = "Ostrel Agent: protected";
  const Row rows[] = {
      {"\"tooltip.protected\" = \"ok\";\n\"status.unavailable\" \"Exit %d\";\n", english,
       "damaged in line 2"},
      {nullptr, english, "could not read the translated texts: Permission denied"},
      {"\"tooltip.protected\" = \"ok\";\n\"status.unavailable\" = \"Exit %@\";\n", "ok",
       "status.unavailable"},
  };
  FakeLog quiet;
  installTranslation(FakeBundle(), quiet);
  EXPECT_TRUE(quiet.lines.empty()) << "no table is no fault";
  for (const auto& row : rows) {
    FakeBundle bundle;
    FakeLog log;
    if (row.table == nullptr) bundle.tableError = PlatformError{posixErrorDomain, 13, "Permission denied"};
    if (row.table != nullptr) bundle.tables["Copy"] = row.table;
    installTranslation(bundle, log);
    EXPECT_EQ(Copy::tooltipProtected.text(), row.text);
    EXPECT_EQ(Copy::statusUnavailable.with(3), "agent status unavailable (exit 3)");
    ASSERT_EQ(log.lines.size(), 1U) << row.logged;
    EXPECT_NE(log.lines[0].find(row.logged), std::string::npos) << log.lines[0];
    Copy::install({});
  }
}

}  // namespace
}  // namespace ostrel
