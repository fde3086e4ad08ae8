#include "OstrelAgent/Status/RFC3339.hpp"

#include <gtest/gtest.h>

#include <sstream>

namespace ostrel {
namespace {

using namespace std::chrono;

TEST(RFC3339, IsReadToTheMillisecond) {
  const Date time = sys_days(year(2025) / 1 / 1) + 30min;
  const std::pair<const char*, Date> rows[] = {
      {"2025-01-01T00:30:00Z", time},
      {"2025-01-01T00:30:00.6Z", time + 600ms},
      {"2025-01-01T00:30:00.67Z", time + 670ms},
      {"2025-01-01T00:30:00.6789Z", time + 678ms},
      {"2025-01-01T00:30:00.000999999999+00:00", time},
      {"2025-01-01T00:30:00.999999999999-00:00", time + 999ms},
      {"2025-01-01T02:00:00+01:30", time},
      {"2024-12-31T19:00:00-05:30", time},
      {"2025-01-02T00:29:00+23:59", time},
      {"2024-02-29T00:00:00Z", sys_days(year(2024) / 2 / 29)},
      {"2000-02-29T00:00:00Z", sys_days(year(2000) / 2 / 29)},
      {"1969-12-31T23:59:59.999Z", Date(-1ms)},
      {"9999-12-31T23:59:59Z", sys_days(year(9999) / 12 / 31) + 24h - 1s},
      {"0000-01-01T00:00:00+23:59", sys_days(year(0) / 1 / 1) - 24h + 1min},
  };
  for (const auto& [text, date] : rows) EXPECT_EQ(parseRFC3339(text), date) << text;
}

TEST(RFC3339, IsWrittenInUtcWithoutFraction) {
  const std::pair<Date, const char*> rows[] = {
      {sys_days(year(2024) / 2 / 29) + 3h + 4min + 5s + 999ms, "2024-02-29T03:04:05Z"},
      {Date(-1ms), "1969-12-31T23:59:59Z"},
      {sys_days(year(9999) / 12 / 31) + 24h - 1ms, "9999-12-31T23:59:59Z"},
      {sys_days(year(7) / 1 / 1), "0007-01-01T00:00:00Z"},
  };
  for (const auto& [date, text] : rows) {
    EXPECT_EQ(formatRFC3339(date), text);
    EXPECT_EQ(parseRFC3339(text), floor<seconds>(date));
  }
}

TEST(RFC3339, IsNoTimeInAnyOtherForm) {
  std::istringstream texts(
      "|tomorrow|2025-01-02|2025-01-02T03:04Z|2025-01-02T03:04:05|2025-02-29T00:00:00Z|1900-02-29T00:00:00Z|"
      "2025-04-31T00:00:00Z|2025-00-02T00:00:00Z|2025-13-02T00:00:00Z|2025-01-00T00:00:00Z|2025-01-02T24:00:"
      "00Z|"
      "2025-01-02T03:60:00Z|2016-12-31T23:59:60Z|2025-01-02t03:04:05Z|2025-01-02T03:04:05z|2025-01-02 "
      "03:04:05Z|"
      "2025-01-02T03:04:05+0200|2025-01-02T03:04:05+02|2025-01-02T03:04:05+24:00|2025-01-02T03:04:05+02:60|"
      "2025-01-02T03:04:05.Z|2025-01-02T03:04:05,5Z|2025-01-02T03:04:05.5|2025-01-02T03:04:05Z | "
      "2025-01-02T03:04:05Z|"
      "2025-01-02T03:04:05ZZ|2025-01-02T03:04:05Z\n|2025-1-02T03:04:05Z|+025-01-02T03:04:05Z|12025-01-02T03:"
      "04:05Z|"
      "2025/01/02T03:04:05Z|2025-01-02T03:04:-5Z|2025-01-02T03:04:05.5e3Z");
  for (std::string text; std::getline(texts, text, '|');) EXPECT_EQ(parseRFC3339(text), std::nullopt) << text;
}

}  // namespace
}  // namespace ostrel
