#pragma once

#include <ctime>
#include <string_view>

#include "Platform/TimeFormat.hpp"

namespace ostrel {

enum class TimeStyle { english, german };

/// The style for a language such as "de" or "de-AT"; English for unknown languages.
TimeStyle timeStyle(std::string_view language);

/// The time of day: "10:20 AM", in German "10:20".
std::string clockTimeText(const std::tm& time, TimeStyle style);

/// The short date with the time of day: "1/2/25, 10:20 AM", in German "02.01.25, 10:20".
std::string shortDateText(const std::tm& time, TimeStyle style);

/// Formats times in the zone of TZ or the system, without installed locales.
class PosixTimeFormat final : public TimeFormat {
 public:
  explicit PosixTimeFormat(std::string_view language) : style_(timeStyle(language)) {}

  std::string clockTime(Date date) const override;
  std::string shortDate(Date date) const override;

 private:
  TimeStyle style_;
};

}  // namespace ostrel
