#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "OstrelAgent/Text/StringsTable.hpp"
#include "Tests/EndToEnd/Process.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"
#include "Tools/OnboardingStages.hpp"

namespace ostrel {
namespace {

using nlohmann::json;

Ran preview(std::vector<std::string> arguments, std::string_view input = {}) {
  arguments.insert(arguments.begin(), PREVIEW);
  return run(arguments, {{"TZ", "UTC"}}, input);
}

TEST(PreviewProgram, ShowsOneDocumentAsPanelOrAsJsonWhateverItsLines) {
  for (const auto& input :
       {reportText(), "\n\n" + reportText() + "\n\n", json::parse(reportText()).dump(2)}) {
    const auto text = preview({}, input);
    EXPECT_EQ(text.status, 0) << text.error;
    EXPECT_TRUE(text.output.starts_with("✓ Protected")) << text.output;
    EXPECT_NE(text.output.find("\n✗ Guard"), std::string::npos) << text.output;
    const auto shown = preview({"--json", "-"}, input);
    EXPECT_EQ(json::parse(shown.output)["tooltip"], "Ostrel Agent: protected");
  }
}

TEST(PreviewProgram, AnswersEveryLineAndReportsBadOnesByNumber) {
  const auto input = reportText() + "\n{\"helper_status\":3}\n\n" + reportText("degraded").substr(1) +
                     "\n{}\n" + reportText("not_protected");
  const auto text = preview({}, input);
  EXPECT_EQ(text.status, 1);
  EXPECT_EQ(std::ranges::count(text.output, '\n'), 5) << text.output;
  EXPECT_NE(text.output.find("\nline 5: version is missing\n"), std::string::npos) << text.output;
  EXPECT_TRUE(text.output.starts_with("Ostrel Agent: protected | ")) << text.output;
  EXPECT_NE(text.output.find("\nOstrel Agent: status not reported | agent status unavailable (exit 3)\n"),
            std::string::npos);
  EXPECT_NE(text.output.find("\nOstrel Agent: not protected | "), std::string::npos) << text.output;
  EXPECT_NE(text.error.find("line 4: "), std::string::npos) << text.error;
  EXPECT_NE(text.error.find("line 5: version is missing\n"), std::string::npos) << text.error;

  const auto shown = preview({"--json"}, input);
  EXPECT_EQ(shown.status, 1);
  std::istringstream lines(shown.output);
  std::vector<bool> isError;
  for (std::string line; std::getline(lines, line);) isError.push_back(json::parse(line).contains("error"));
  EXPECT_EQ(isError, (std::vector<bool>{false, false, true, true, false}));
}

TEST(PreviewProgram, ShowsTheOnboardingWindowAsText) {
  std::vector<OnboardingContent> stages;
  for (const auto name : onboardingStageNames()) {
    const auto content = onboardingAt(name);
    ASSERT_TRUE(content) << name;
    EXPECT_EQ(std::ranges::count(stages, *content), 0) << name << " looks like an earlier stage";
    stages.push_back(*content);
  }
  const auto shown = preview({"--onboarding", "trust-needed", "--language", "de"});
  EXPECT_EQ(shown.status, 0) << shown.error;
  EXPECT_NE(shown.output.find("[1] Zertifikat vertrauen   [2] Nicht jetzt"), std::string::npos)
      << shown.output;
  const auto unknown = preview({"--onboarding", "later"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.error, "ostrel-preview: there is no stage later\n");
  for (const auto* other : {"--json", "report.json"}) {
    EXPECT_EQ(preview({"--onboarding", "repair", other}).status, 2) << other;
  }
}

TEST(PreviewProgram, ShowsTheAlertsAsText) {
  EXPECT_EQ(preview({"--alert", "list"}).output, "install\nupdate-failed\n");
  const auto shown = preview({"--alert", "install", "--language", "de"});
  EXPECT_EQ(shown.status, 0) << shown.error;
  EXPECT_NE(shown.output.find("[1] Installieren   [2] Abbrechen"), std::string::npos) << shown.output;
  const auto unknown = preview({"--alert", "later"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.error, "ostrel-preview: there is no alert later\n");
  for (const auto* other : {"--json", "report.json"}) {
    EXPECT_EQ(preview({"--alert", "install", other}).status, 2) << other;
  }
  EXPECT_EQ(preview({"--alert", "install", "--onboarding", "repair"}).status, 2);
}

TEST(PreviewProgram, ShowsEveryPageOfTheAgentWindow) {
  for (const std::string page :
       {"ecosystems", "containers", "egressLock", "identity", "health", "notifications", "help"}) {
    const auto text = preview({"--window", page}, reportText());
    EXPECT_EQ(text.status, 0) << text.error;
    EXPECT_TRUE(text.output.starts_with("✓ Protected · Enrolled\n")) << text.output;
    const auto shown = json::parse(preview({"--window", page, "--json"}, reportText()).output);
    EXPECT_EQ(shown["page"], page);
    EXPECT_TRUE(shown["body"].is_object()) << page;
    EXPECT_NE(text.output.find("\n" + shown["title"].get<std::string>() + "\n"), std::string::npos);
  }
  EXPECT_EQ(preview({"--window", "panel"}).status, 2);
  EXPECT_EQ(preview({"--window", "help", "--png", "x", "--size", "620"}).status, 2);
  EXPECT_EQ(preview({"--window", "help", "--size", "620x360"}).status, 2);
}

TEST(PreviewProgram, HostileInputIsAnErrorWithoutACrash) {
  std::string nested;
  for (int i = 0; i < 100'000; ++i) nested += "{\"a\":";
  const auto unknown = reportText().insert(1, "\"x\":" + nested + "1" + std::string(100'000, '}') + ",");
  EXPECT_EQ(preview({"--json"}, unknown).status, 0) << "an unknown member may have any depth";
  const std::string rows[] = {
      "", " \r\n\t\n", nested, "{\"\xff\":1}", std::string(7, '\0'), reportText() + std::string(1, '\0'),
  };
  for (const auto& row : rows) {
    const auto ran = preview({"--json"}, row);
    EXPECT_EQ(ran.status, 1) << row.substr(0, 50);
    EXPECT_TRUE(ran.error.starts_with("ostrel-preview: ")) << ran.error.substr(0, 500);
    EXPECT_EQ(std::ranges::count(ran.error, '\n'), 1) << ran.error.substr(0, 500);
    EXPECT_TRUE(ran.output.empty() || json::accept(ran.output)) << ran.output;
  }
}

TEST(PreviewProgram, ExportsATableWithEveryKeyOnce) {
  const auto entries = parseStrings(preview({"--export-strings"}).output);
  ASSERT_TRUE(entries) << entries.error().line << ": " << entries.error().reason;
  std::set<std::string> keys;
  for (const auto& [key, text] : *entries) keys.insert(key);
  EXPECT_EQ(keys.size(), 374U);
  EXPECT_EQ(entries->size(), 374U);
}

TEST(PreviewProgram, UsesTheRequestedLanguageOrEnglish) {
  const std::pair<std::vector<std::string>, const char*> rows[] = {
      {{"--language", "de_AT.UTF-8"}, "geschützt"},
      {{"--language", "fr"}, "protected"},
      {{"--language", "../../de"}, "protected"},
  };
  for (auto [arguments, word] : rows) {
    arguments.emplace_back("--json");
    const auto ran = preview(arguments, reportText());
    EXPECT_EQ(ran.status, 0) << ran.error;
    EXPECT_EQ(json::parse(ran.output)["tooltip"], std::string("Ostrel Agent: ") + word) << arguments[1];
    EXPECT_EQ(ran.error, "");
  }
}

TEST(PreviewProgram, ReportsUnreadableFilesAndItsUsage) {
  const auto unread = preview({"/"});
  EXPECT_EQ(unread.status, 1);
  EXPECT_EQ(unread.error, "ostrel-preview: / cannot be read\n");
  EXPECT_TRUE(preview({"--help"}).output.starts_with("usage: ostrel-preview "));
  const std::vector<std::string> rows[] = {{"--yaml"},
                                           {"--"},
                                           {"--language"},
                                           {"a", "-"},
                                           {"--png", "x", "--json"},
                                           {"--json", "--icon", "x"},
                                           {"--dark"},
                                           {"--scale", "4", "--png", "x"}};
  for (const auto& row : rows) {
    const auto wrong = preview(row);
    EXPECT_EQ(wrong.status, 2) << row[0];
    EXPECT_EQ(wrong.output, "");
    EXPECT_TRUE(wrong.error.starts_with("usage: ostrel-preview ")) << wrong.error;
  }
}

}  // namespace
}  // namespace ostrel
