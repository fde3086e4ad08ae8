#pragma once

#include <compare>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ostrel {

/// One parameter of a message: a text for "%@" or an integer for "%d".
using FormatArgument = std::variant<std::string_view, std::int64_t>;

/// A specifier of a format: "%@", "%d", or with an argument number "%2$@".
struct FormatSpecifier {
  std::size_t position = 0;  ///< number of its argument, from 1
  char kind = '@';           ///< '@' or 'd'

  auto operator<=>(const FormatSpecifier&) const = default;
};

/// The specifiers of a format, ascending by position and kind. "%%" and a lone "%" are none.
std::vector<FormatSpecifier> formatSpecifiers(std::string_view format);

/// The format with its arguments filled in. Integers are not grouped; a missing argument becomes empty.
std::string formatText(std::string_view format, std::initializer_list<FormatArgument> arguments);

}  // namespace ostrel
