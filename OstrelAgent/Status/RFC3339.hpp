#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Date.hpp"

namespace ostrel {

/// Parses an internet date-time such as "2025-01-02T03:04:05.678Z": a real date, upper-case T and Z or
/// ±hh:mm, fractions cut to milliseconds. Returns nullopt for any other text.
std::optional<Date> parseRFC3339(std::string_view text);

/// The time as an internet date-time in UTC, fractions of a second cut off: "2025-01-02T03:04:05Z".
std::string formatRFC3339(Date date);

}  // namespace ostrel
