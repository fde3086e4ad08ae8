#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel::simulated {

/// The bytes of a small file, nothing when it is missing, or a sentence on why it cannot be read.
[[nodiscard]] std::expected<std::optional<std::string>, std::string> readTextFile(const std::string& path);

/// Replaces the file in one step and makes its folders; on failure the old file stays as it was.
[[nodiscard]] std::expected<void, std::string> writeTextFile(const std::string& path, std::string_view text);

}  // namespace ostrel::simulated
