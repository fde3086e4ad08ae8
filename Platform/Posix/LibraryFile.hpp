#pragma once

#include <optional>
#include <string>

namespace ostrel {

/// Why the file cannot be loaded as a library; nothing when it is all there. Each system brings its own.
std::optional<std::string> faultOfLibraryFile(const std::string& path);

}  // namespace ostrel
