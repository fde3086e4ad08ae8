#include "SimulatedEndpoint/HelperBehaviour.hpp"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace ostrel::simulated {
namespace {

TEST(HelperBehaviour, NamesTheKeyThatIsWrong) {
  struct Row {
    const char* helper;
    const char* named;  // nothing where the helper is without fault
  };
  constexpr std::array<Row, 16> rows = {{
      {R"({})", nullptr},
      {R"({"exit": 255, "signal": 31, "garbage": false, "hang": true, "ignore_term": true})", nullptr},
      {R"({"omit": "version", "pad_bytes": 0, "truncate_bytes": 0, "delay_ms": 3600000})", nullptr},
      {R"({"close_output_and_live_ms": 5, "send": "retry", "only": "diagnostics"})", nullptr},
      {R"([])", "\"helper\""},
      {R"({"exti": 3})", "\"exti\""},
      {R"({"exit": 256})", "\"helper.exit\""},
      {R"({"exit": -1})", "\"helper.exit\""},
      {R"({"exit": 1.0})", "\"helper.exit\""},
      {R"({"exit": true})", "\"helper.exit\""},
      {R"({"pad_bytes": 18446744073709551615})", "\"helper.pad_bytes\""},
      {R"({"signal": 0})", "\"helper.signal\""},
      {R"({"hang": "yes"})", "\"helper.hang\""},
      {R"({"omit": null})", "\"helper.omit\""},
      {R"({"send": "later"})", "\"helper.send\""},
      {R"({"only": ""})", "\"helper.only\""},
  }};
  for (const auto& row : rows) {
    const auto fault = helperFault(Json::parse(row.helper));
    ASSERT_EQ(fault.has_value(), row.named != nullptr) << row.helper << fault.value_or("");
    if (!fault) continue;
    EXPECT_NE(fault->find(row.named), std::string::npos) << *fault;
  }
}

TEST(HelperBehaviour, HoldsForItsOneCommandOnly) {
  const Json helper = {{"only", "diagnostics"}, {"exit", 3}, {"send", "error"}};
  EXPECT_EQ(helperBehaviour(helper, "diagnostics").exitStatus, 3);
  EXPECT_EQ(helperBehaviour(helper, "status"), HelperBehaviour());
}

TEST(HelperBehaviour, PadsTheReportToTheByteAndKeepsItJson) {
  const Json report = {{"version", "4.12.0 \"…\""}, {"health", Json::object()}};
  HelperBehaviour behaviour;
  const auto plain = printedReport(report, behaviour);
  for (const std::size_t size : {plain.size() + 40, std::size_t{70'000}}) {
    behaviour.padBytes = size;
    const auto text = printedReport(report, behaviour);
    EXPECT_EQ(text.size(), size);
    auto parsed = Json::parse(text);
    parsed.erase("padding");
    EXPECT_EQ(parsed, report);
  }
  behaviour.padBytes = plain.size();
  EXPECT_EQ(printedReport(report, behaviour), plain);
}

}  // namespace
}  // namespace ostrel::simulated
