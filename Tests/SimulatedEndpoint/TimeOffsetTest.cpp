#include "SimulatedEndpoint/TimeOffset.hpp"

#include <gtest/gtest.h>

#include <array>

namespace ostrel::simulated {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::sys_seconds now =
    std::chrono::sys_days(std::chrono::year(2024) / 2 / 28) + 23h + 59min;

TEST(TimeOffset, BecomesTheTimeThatIsSoFarFromNow) {
  struct Row {
    const char* text;
    const char* time;
  };
  constexpr std::array<Row, 8> rows = {{
      {"@+0s", "2024-02-28T23:59:00Z"},
      {"@-2m", "2024-02-28T23:57:00Z"},
      {"@+1m", "2024-02-29T00:00:00Z"},
      {"@+1h30m", "2024-02-29T01:29:00Z"},
      {"@+2d", "2024-03-01T23:59:00Z"},
      {"@-59d", "2023-12-31T23:59:00Z"},
      {"@+36525d", "2124-02-29T23:59:00Z"},
      {"@-1d23h59m1s", "2024-02-26T23:59:59Z"},
  }};
  for (const auto& row : rows) EXPECT_EQ(withTimes(row.text, now), row.time) << row.text;
}

TEST(TimeOffset, IsFoundAtAnyDepthAndOtherTextsStay) {
  const Json value = {{"a", {{"b", {"@-1m", "tomorrow", 7, nullptr}}}}, {"@-1m", "@scope/package"}};
  const Json expected = {{"a", {{"b", {"2024-02-28T23:58:00Z", "tomorrow", 7, nullptr}}}},
                         {"@-1m", "@scope/package"}};
  EXPECT_EQ(withTimes(value, now), expected);
}

TEST(TimeOffset, IsRecognisedWhenMisspelt) {
  for (const auto* text : {"@+", "@-", "@+10", "@+m", "@+1w", "@+-1m", "@+1m ", "@+1.5h", "@+36526d",
                           "@+36525d1s", "@+4294967296s", "@+99999999999999999999d"}) {
    EXPECT_EQ(firstMisspeltTime({{"x", {1, text}}}), text);
    EXPECT_EQ(withTimes(text, now), text);
  }
  EXPECT_EQ(firstMisspeltTime({{"x", {"@+1m", "@scope", ""}}}), std::nullopt);
}

}  // namespace
}  // namespace ostrel::simulated
