#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// The text with every control character as a blank, so that foreign words cannot steer a terminal.
std::string printableText(std::string_view text);

}  // namespace ostrel
