#pragma once

#include <cstdio>

#include "Platform/TimeFormat.hpp"

namespace ostrel {

/// English times of UTC.
class FakeTimeFormat final : public TimeFormat {
 public:
  std::string clockTime(Date date) const override {
    const auto sinceMidnight = date - std::chrono::floor<std::chrono::days>(date);
    const auto minutes = static_cast<int>(std::chrono::floor<std::chrono::minutes>(sinceMidnight).count());
    const int hour = minutes / 60;
    char text[32];
    std::snprintf(text, sizeof text, "%d:%02d %s", (hour + 11) % 12 + 1, minutes % 60,
                  hour < 12 ? "AM" : "PM");
    return text;
  }

  std::string shortDate(Date date) const override {
    const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(date));
    char text[32];
    std::snprintf(text, sizeof text, "%u/%u/%02d, ", static_cast<unsigned>(day.month()),
                  static_cast<unsigned>(day.day()), static_cast<int>(day.year()) % 100);
    return text + clockTime(date);
  }
};

}  // namespace ostrel
