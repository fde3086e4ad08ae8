#pragma once

#include <string_view>

namespace ostrel {

/// True when the text contains the part; the case of the letters A to Z does not count.
bool containsIgnoringCase(std::string_view text, std::string_view part);

}  // namespace ostrel
