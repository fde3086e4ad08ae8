#include "OstrelAgent/Panel/PanelMessages.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

using Error = ControlSocketError;
using Case = ControlSocketError::Case;

std::string repeated(std::string_view text, int times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

std::string skipped(const std::string& reason) {
  return checkinNotice(JsonObject::parse(R"({"ok":true,"skipped":")" + reason + R"("})").value());
}

TEST(PanelMessages, ACheckInNoticeIsTheFirstMemberOfTheAnswer) {
  const std::pair<const char*, const char*> rows[] = {
      {R"({"checked_in":true,"skipped":"x","last_error":"y"})", "Checked in"},
      {R"({"checked_in":false,"skipped":"offline","last_error":"y"})", "Skipped: offline"},
      {R"({"checked_in":"true","skipped":"","last_error":"no route"})", "Check-in failed: no route"},
      {R"({"skipped":true,"last_error":""})", "Skipped"},
      {R"({})", "Skipped"},
  };
  for (const auto& [answer, notice] : rows) {
    EXPECT_EQ(checkinNotice(JsonObject::parse(answer).value()), notice) << answer;
  }
  EXPECT_EQ(checkinNotice(std::unexpected(Error{.kind = Case::requestFailed, .message = "No."})),
            "Check-in failed: No.");
}

TEST(PanelMessages, AReasonIsCutAfter120CharactersOfAnyLengthInBytes) {
  for (const std::string_view character : {"a", "é", "😀"}) {
    EXPECT_EQ(skipped(repeated(character, 120)), "Skipped: " + repeated(character, 120));
    EXPECT_EQ(skipped(repeated(character, 121)), "Skipped: " + repeated(character, 120) + "…");
  }
}

TEST(PanelMessages, SentDiagnosticsHaveATimeOrAnError) {
  const Date now{std::chrono::seconds(1000)};
  struct Row {
    std::int32_t status;
    std::string output;
    DiagnosticsSending sending;
  };
  const auto failed = [](const char* sentence) { return DiagnosticsSending{std::nullopt, sentence}; };
  const auto sent = [](Date date) { return DiagnosticsSending{date, std::nullopt}; };
  const Row rows[] = {
      {0, R"({"sent":true,"sent_at":"1970-01-01T00:01:00Z"})", sent(Date(std::chrono::seconds(60)))},
      {1, R"({"sent":true,"sent_at":"1970-01-01T00:01:00.5Z"})",
       sent(Date(std::chrono::milliseconds(60500)))},
      {0, R"({"sent":true,"sent_at":"yesterday"})", sent(now)},
      {0, R"({"sent":true,"retry_after_seconds":60})", sent(now)},
      {0, R"({"sent":false,"retry_after_seconds":61,"error":"x"})",
       failed("Already sent recently. Try again in 2 min.")},
      {4, R"({"retry_after_seconds":60})", failed("Already sent recently. Try again in 1 min.")},
      {0, R"({"retry_after_seconds":9223372036854775807})",
       failed("Already sent recently. Try again in 153722867280912931 min.")},
      {0, R"({"retry_after_seconds":0,"error":"no route"})", failed("Couldn't send: no route")},
      {5, R"({"retry_after_seconds":"61"})", failed("Couldn't send: ")},
      {0, "not JSON", failed("Couldn't send: ")},
      {0, "[]", failed("Couldn't send: ")},
      {0, "", failed("Couldn't send: ")},
      {0, R"({"report":")" + std::string(20000000, 'x') + R"(","error":"too large"})",
       failed("Couldn't send: too large")},
      {127, "", failed("Couldn't collect diagnostics (exit 127). Try again in a moment.")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(diagnosticsSending({row.status, row.output}, now), row.sending)
        << row.status << row.output.substr(0, 100);
  }
}

TEST(PanelMessages, AServiceThatDoesNotKnowUpdatesIsTooOldForThem) {
  const auto isTooOld = [](const Error& error) {
    return updateFailedAlert(error).text.starts_with("This Mac's Ostrel Guard service is too old");
  };
  EXPECT_TRUE(isTooOld({.kind = Case::requestFailed, .message = "unknown action \"update\""}));
  EXPECT_TRUE(isTooOld({.kind = Case::refused, .message = "unknown action", .reason = "unknown_action"}));
  EXPECT_EQ(updateFailedAlert({.kind = Case::refused, .message = "An unknown hash.", .reason = "hash"}).text,
            "An unknown hash.");
  EXPECT_NE(updateFailedAlert({.kind = Case::notAdmin}).text.find("install updates"), std::string::npos);
}

}  // namespace
}  // namespace ostrel
