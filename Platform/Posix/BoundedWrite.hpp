#pragma once

#include <string_view>

namespace ostrel {

/// Writes the text in pieces that do not block. After half a second without room the rest is dropped: a full
/// pipe must block neither the main loop nor the exit.
void writeBounded(int descriptor, std::string_view text);

}  // namespace ostrel
