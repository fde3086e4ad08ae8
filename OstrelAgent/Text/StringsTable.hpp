#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrel {

/// Keys with their texts, in the order of the file.
using StringsEntries = std::vector<std::pair<std::string, std::string>>;

/// The place of a syntax error in a strings table.
struct StringsError {
  std::size_t line = 0;  ///< from 1
  std::string reason;

  bool operator==(const StringsError&) const = default;
};

/// Reads a table of `"key" = "value";` entries in UTF-8, with /* */ and // comments and the escapes \" \\ \'
/// \n \t \r, \Uxxxx and \uxxxx. A table with one mistake is refused as a whole.
[[nodiscard]] std::expected<StringsEntries, StringsError> parseStrings(std::string_view bytes);

/// One entry as a line of such a table.
std::string stringsLine(std::string_view key, std::string_view value);

}  // namespace ostrel
