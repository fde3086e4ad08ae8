#pragma once

#include <ctime>
#include <string_view>

#include "Platform/TimeFormat.hpp"

namespace ostrel {

enum class TimeStyle { english, german };

/// The style of a language such as "de" or "de-AT"; English for every language that has none of its own.
TimeStyle timeStyle(std::string_view language);

/// The time of day: "10:20 AM", in German "10:20".
std::string clockTimeText(const std::tm& time, TimeStyle style);

/// The short date with the time of day: "1/2/25, 10:20 AM", in German "02.01.25, 10:20".
std::string shortDateText(const std::tm& time, TimeStyle style);

/// Times in the zone of TZ or of the system, without need of an installed locale.
class PosixTimeFormat final : public TimeFormat {
 public:
  explicit PosixTimeFormat(std::string_view language) : style_(timeStyle(language)) {}

  std::string clockTime(Date date) const override;
  std::string shortDate(Date date) const override;

 private:
  TimeStyle style_;
};

}  // namespace ostrel
