#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// Sets the value at a path such as "report.features.0.state" and makes the objects on its way. The first
/// segment must exist; an index may be one past the end. On failure the document may hold a part of the way.
[[nodiscard]] std::expected<void, std::string> setAtPath(Json& document, std::string_view path, Json value);

/// Whether a change at the one path can change the value at the other.
bool pathsTouch(std::string_view one, std::string_view other);

}  // namespace ostrel::simulated
