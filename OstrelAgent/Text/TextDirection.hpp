#pragma once

#include <string_view>

namespace ostrel {

enum class TextDirection { leftToRight, rightToLeft };

/// The direction of the text's first letter; left to right without a letter.
TextDirection directionOf(std::string_view text);

}  // namespace ostrel
