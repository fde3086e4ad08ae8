#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace ostrel {

/// Gives the real path behind a path of the program. Any thread.
using PathMap = std::function<std::string(std::string_view)>;

}  // namespace ostrel
