#pragma once

#include <string_view>

namespace ostrel {

enum class TextDirection { leftToRight, rightToLeft };

/// The way in which the text's first letter runs; left to right without a letter.
TextDirection directionOf(std::string_view text);

}  // namespace ostrel
