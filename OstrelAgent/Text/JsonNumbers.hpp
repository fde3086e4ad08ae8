#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// The JSON with every number that no double can hold replaced by a small one with a fraction, at the same
/// length. Such a number is well-formed, but the parser refuses it even where nobody asks for it.
std::string withoutHugeNumbers(std::string_view json);

}  // namespace ostrel
