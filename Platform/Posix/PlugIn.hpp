#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel {

/// Loads the plug-in at an absolute path, for the rest of the process, and gives its one symbol: a table
/// whose first member names, as a C string, the build that it belongs to. A sentence when the file cannot be
/// loaded or belongs to another build.
[[nodiscard]] std::expected<const void*, std::string> loadPlugIn(const std::string& path, const char* symbol,
                                                                 std::string_view build);

/// Why the file is no complete library. Each system brings its own: a loader that maps a file without a look
/// at its length is killed by SIGBUS at a page beyond the end.
[[nodiscard]] std::optional<std::string> faultOfLibraryFile(const std::string& path);

}  // namespace ostrel
