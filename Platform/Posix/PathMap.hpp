#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace ostrel {

/// Maps a path of the program to the real path. Any thread.
using PathMap = std::function<std::string(std::string_view)>;

}  // namespace ostrel
