#include "Tests/Fakes/FakeTimeFormat.hpp"

#include <cstdio>

namespace ostrel {

std::string FakeTimeFormat::clockTime(Date date) const {
  const auto sinceMidnight = date - std::chrono::floor<std::chrono::days>(date);
  const auto minutes = static_cast<int>(std::chrono::floor<std::chrono::minutes>(sinceMidnight).count());
  const int hour = minutes / 60;
  char text[32];
  std::snprintf(text, sizeof text, "%d:%02d %s", (hour + 11) % 12 + 1, minutes % 60, hour < 12 ? "AM" : "PM");
  return text;
}

std::string FakeTimeFormat::shortDate(Date date) const {
  const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(date));
  char text[32];
  std::snprintf(text, sizeof text, "%u/%u/%02d, ", static_cast<unsigned>(day.month()),
                static_cast<unsigned>(day.day()), static_cast<int>(day.year()) % 100);
  return text + clockTime(date);
}

}  // namespace ostrel
