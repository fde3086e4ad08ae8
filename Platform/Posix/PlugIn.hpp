#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace ostrel {

/// Loads the plug-in at an absolute path, for the rest of the process, and gives its one symbol: a table
/// whose first member names, as a C string, the build that it belongs to. A sentence when the file cannot be
/// loaded or belongs to another build.
[[nodiscard]] std::expected<const void*, std::string> loadPlugIn(const std::string& path, const char* symbol,
                                                                 std::string_view build);

}  // namespace ostrel
