#include "SimulatedEndpoint/TimeOffset.hpp"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <regex>

namespace ostrel::simulated {

namespace {

constexpr std::chrono::seconds longest = std::chrono::days(36525);

std::optional<std::chrono::seconds> unitLength(char unit) {
  switch (unit) {
    case 'd':
      return std::chrono::days(1);
    case 'h':
      return std::chrono::hours(1);
    case 'm':
      return std::chrono::minutes(1);
    case 's':
      return std::chrono::seconds(1);
    default:
      return std::nullopt;
  }
}

}  // namespace

bool isTimeOffset(std::string_view text) { return text.starts_with("@+") || text.starts_with("@-"); }

std::optional<std::chrono::seconds> parseTimeOffset(std::string_view text) {
  if (!isTimeOffset(text) || text.size() == 2) return std::nullopt;
  const bool isPast = text[1] == '-';
  text.remove_prefix(2);
  std::chrono::seconds total{0};
  while (!text.empty()) {
    std::uint32_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (error != std::errc() || text.empty()) return std::nullopt;
    const auto unit = unitLength(text.front());
    if (!unit) return std::nullopt;
    total += *unit * count;
    if (total > longest) return std::nullopt;
    text.remove_prefix(1);
  }
  return isPast ? -total : total;
}

std::string rfc3339(std::chrono::sys_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text.data();
}

std::optional<Date> parseRfc3339(const std::string& text) {
  static const std::regex shape(
      R"((\d{4})-(\d\d)-(\d\d)T(\d\d):(\d\d):(\d\d)(\.\d{1,9})?(Z|([+-])(\d\d):(\d\d)))");
  std::smatch parts;
  if (!std::regex_match(text, parts, shape)) return std::nullopt;
  const auto number = [&parts](std::size_t part) { return std::stoi("0" + parts[part].str()); };
  const auto month = std::chrono::year(number(1)) / number(2);
  const std::chrono::year_month_day date = month / number(3);
  constexpr int leapSecond = 60;
  if (!date.ok() || number(4) > 23 || number(5) > 59 || number(6) > leapSecond) return std::nullopt;
  if (number(10) > 23 || number(11) > 59) return std::nullopt;
  const auto offset = std::chrono::hours(number(10)) + std::chrono::minutes(number(11));
  const std::chrono::milliseconds fraction(std::stoi((parts[7].str() + "0000").substr(1, 3)));
  const Date local = std::chrono::sys_days(date) + std::chrono::hours(number(4)) +
                     std::chrono::minutes(number(5)) + std::chrono::seconds(number(6)) + fraction;
  return parts[9] == "-" ? local + offset : local - offset;
}

Json withTimes(Json value, std::chrono::sys_seconds now) {
  if (value.is_structured()) {
    for (auto& element : value) element = withTimes(std::move(element), now);
  } else if (value.is_string()) {
    if (const auto offset = parseTimeOffset(value.get_ref<const std::string&>()))
      return rfc3339(now + *offset);
  }
  return value;
}

std::optional<std::string> firstMisspeltTime(const Json& value) {
  if (value.is_string()) {
    const auto& text = value.get_ref<const std::string&>();
    if (isTimeOffset(text) && !parseTimeOffset(text)) return text;
  } else if (value.is_structured()) {
    for (const auto& element : value) {
      if (auto text = firstMisspeltTime(element)) return text;
    }
  }
  return std::nullopt;
}

}  // namespace ostrel::simulated
