#include "Platform/Posix/PosixTimeFormat.hpp"

namespace ostrel {

namespace {

std::string twoDigits(int number) {
  std::string digits(number < 10 ? 1 : 0, '0');
  return digits += std::to_string(number);
}

int yearOfCentury(const std::tm& time) { return (time.tm_year % 100 + 100) % 100; }

std::tm localTime(Date date) {
  const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
  // Rereads the time zone, which changes when the user travels.
  ::tzset();
  std::tm time{};
  (void)::localtime_r(&seconds, &time);
  return time;
}

}  // namespace

TimeStyle timeStyle(std::string_view language) {
  const auto primary = language.substr(0, language.find_first_of("-_"));
  return primary == "de" ? TimeStyle::german : TimeStyle::english;
}

std::string clockTimeText(const std::tm& time, TimeStyle style) {
  const int hour = time.tm_hour % 12 == 0 ? 12 : time.tm_hour % 12;
  auto text = style == TimeStyle::german ? twoDigits(time.tm_hour) : std::to_string(hour);
  text.append(":").append(twoDigits(time.tm_min));
  if (style == TimeStyle::english) text += time.tm_hour < 12 ? " AM" : " PM";
  return text;
}

std::string shortDateText(const std::tm& time, TimeStyle style) {
  const int month = time.tm_mon + 1;
  const auto date = style == TimeStyle::german
                        ? twoDigits(time.tm_mday) + "." + twoDigits(month) + "."
                        : std::to_string(month) + "/" + std::to_string(time.tm_mday) + "/";
  return date + twoDigits(yearOfCentury(time)) + ", " + clockTimeText(time, style);
}

std::string PosixTimeFormat::clockTime(Date date) const { return clockTimeText(localTime(date), style_); }

std::string PosixTimeFormat::shortDate(Date date) const { return shortDateText(localTime(date), style_); }

}  // namespace ostrel
