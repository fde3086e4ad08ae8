#pragma once

#include <expected>
#include <string>

#include "Platform/Files.hpp"
#include "SimulatedEndpoint/Json.hpp"

namespace ostrel::simulated {

/// What a JSON file holds, null when it is missing, or a sentence on why it cannot be used.
[[nodiscard]] std::expected<Json, std::string> readJsonFile(const Files& files, const std::string& path);

/// Replaces the file in one step and makes its folder, or gives a sentence on why it cannot.
[[nodiscard]] std::expected<void, std::string> writeJsonFile(Files& files, const std::string& path,
                                                             const Json& value);

}  // namespace ostrel::simulated
