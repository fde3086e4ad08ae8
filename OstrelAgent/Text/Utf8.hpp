#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// True when the bytes are well-formed UTF-8: no overlong form, no surrogate, no code point above U+10FFFF.
bool isUtf8(std::string_view bytes);

/// Appends one code point in UTF-8.
void appendUtf8(std::string& text, char32_t point);

}  // namespace ostrel
