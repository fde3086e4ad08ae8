#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrel {

/// Columns a text takes, a code point each.
std::size_t columns(std::string_view text);

/// The text with blanks behind it up to that many columns.
std::string padded(std::string_view text, std::size_t width);

/// Text in lines of at most 80 columns where words allow.
class TextLines {
 public:
  /// Writes one line as it is, but for blanks at its end.
  void line(std::string_view text);
  void blank() { text_ += '\n'; }

  /// Writes words in lines, each indented; nothing for an empty text.
  void paragraph(std::size_t indent, std::string_view words);

  /// Writes words behind a prefix, the lines that follow indented by its width.
  void hanging(std::string_view prefix, std::string_view words);

  /// Writes pieces behind a prefix with a gap between them, in as many lines as they need.
  void flow(std::string_view prefix, const std::vector<std::string>& pieces, std::string_view gap);

  /// What was written; leaves nothing.
  std::string take() { return std::move(text_); }

 private:
  std::string text_;
};

}  // namespace ostrel
