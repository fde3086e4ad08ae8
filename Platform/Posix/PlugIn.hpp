#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel {

/// Loads the plug-in at an absolute path for the rest of the process and returns its one symbol: a table
/// whose first member is a C string with its build. An error text when it cannot be loaded or is from another
/// build.
[[nodiscard]] std::expected<const void*, std::string> loadPlugIn(const std::string& path, const char* symbol,
                                                                 std::string_view build);

/// Why the file is not a complete library; implemented per system. Loaders that map a truncated file would be
/// killed by SIGBUS.
[[nodiscard]] std::optional<std::string> faultOfLibraryFile(const std::string& path);

}  // namespace ostrel
