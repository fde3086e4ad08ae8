#include <gtest/gtest.h>

#include <cstdlib>
#include <iomanip>
#include <sstream>

#include "Platform/Posix/PosixTimeFormat.hpp"
#include "Tests/Fakes/FakeTimeFormat.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

std::tm time(const std::string& text) {
  std::tm time{};
  std::istringstream(text) >> std::get_time(&time, "%Y-%m-%d %H:%M");
  return time;
}

/// The zone of the process for one test.
struct TimeZone {
  explicit TimeZone(const char* name) { ::setenv("TZ", name, 1); }
  ~TimeZone() { ::unsetenv("TZ"); }
};

TEST(TimeFormat, RendersTimesInTheStyleOfTheLanguage) {
  struct Row {
    std::tm time;
    const char* english;
    const char* german;
  };
  const Row rows[] = {
      {time("2025-01-02 10:20"), "1/2/25, 10:20 AM", "02.01.25, 10:20"},
      {time("2025-12-31 00:00"), "12/31/25, 12:00 AM", "31.12.25, 00:00"},
      {time("2024-02-29 12:05"), "2/29/24, 12:05 PM", "29.02.24, 12:05"},
      {time("2000-11-09 23:59"), "11/9/00, 11:59 PM", "09.11.00, 23:59"},
      {time("1899-07-10 13:00"), "7/10/99, 1:00 PM", "10.07.99, 13:00"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(shortDateText(row.time, TimeStyle::english), row.english);
    EXPECT_EQ(shortDateText(row.time, TimeStyle::german), row.german);
  }
}

TEST(TimeFormat, EveryLanguageButGermanHasEnglishTimes) {
  for (const auto* language : {"de", "de-AT", "de_CH"}) EXPECT_EQ(timeStyle(language), TimeStyle::german);
  for (const auto* language : {"", "en", "den", "fr-DE"}) EXPECT_EQ(timeStyle(language), TimeStyle::english);
}

TEST(TimeFormat, FollowsTheZoneOfTheProcessWhenItChanges) {
  const Date date = std::chrono::sys_days(std::chrono::year(2025) / 1 / 1) + 23h + 30min;
  const PosixTimeFormat format("en");
  const std::pair<const char*, const char*> rows[] = {
      {"UTC0", "1/1/25, 11:30 PM"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "1/2/25, 12:30 AM"},
      {"EST5", "1/1/25, 6:30 PM"},
  };
  for (const auto& [name, text] : rows) {
    const TimeZone zone(name);
    EXPECT_EQ(format.shortDate(date), text) << name;
  }
}

TEST(TimeFormatContract, TheFakeGivesTheTextsOfTheRealOne) {
  const TimeZone zone("UTC0");
  const PosixTimeFormat real("en");
  const FakeTimeFormat fake;
  for (const auto sinceStart :
       {0ms, -1ms, 1735813200123ms, 951782399999ms, 1735819200000ms, 4102444800000ms}) {
    const Date date(sinceStart);
    EXPECT_EQ(fake.clockTime(date), real.clockTime(date));
    EXPECT_EQ(fake.shortDate(date), real.shortDate(date));
  }
}

}  // namespace
}  // namespace ostrel
