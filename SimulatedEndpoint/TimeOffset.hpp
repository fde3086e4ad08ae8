#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Date.hpp"
#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// Whether a text is meant as an offset from now: it begins with "@+" or "@-".
bool isTimeOffset(std::string_view text);

/// The offset of "@+1h30m" or "@-3d" (days, hours, minutes, seconds; at most a century), nothing when it is
/// misspelt.
std::optional<std::chrono::seconds> parseTimeOffset(std::string_view text);

/// Internet date-time in UTC, whole seconds: "2025-01-02T03:04:05Z".
std::string rfc3339(std::chrono::sys_seconds time);

/// The time of an internet date-time with any offset, cut to milliseconds; nullopt when it is none.
std::optional<Date> parseRfc3339(const std::string& text);

/// The value with each offset in it turned into the time that it means now.
Json withTimes(Json value, std::chrono::sys_seconds now);

/// The first text of the value that is meant as an offset and is none.
std::optional<std::string> firstMisspeltTime(const Json& value);

}  // namespace ostrel::simulated
