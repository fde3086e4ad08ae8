#pragma once

#include <string_view>

namespace ostrel {

/// Writes the text to a stream that somebody reads, in pieces that do not block. What the reader leaves
/// standing for half a second is lost: a full pipe must hold up neither the main loop nor the end of the
/// program.
void writeBounded(int descriptor, std::string_view text);

}  // namespace ostrel
