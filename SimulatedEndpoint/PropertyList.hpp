#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// The value of an XML property list of dictionaries, arrays, texts, integers and flags, or a sentence on
/// what is wrong with it.
[[nodiscard]] std::expected<Json, std::string> parsePropertyList(std::string_view text);

}  // namespace ostrel::simulated
