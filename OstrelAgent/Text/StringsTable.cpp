#include "OstrelAgent/Text/StringsTable.hpp"

#include <algorithm>
#include <optional>

#include "OstrelAgent/Text/Utf8.hpp"

namespace ostrel {

namespace {

class StringsParser {
 public:
  explicit StringsParser(std::string_view bytes) : bytes_(bytes) {
    if (bytes_.starts_with("\xEF\xBB\xBF")) at_ = 3;
  }

  [[nodiscard]] std::expected<StringsEntries, StringsError> parse() {
    if (!isUtf8(bytes_)) return fail("the table is not UTF-8");
    StringsEntries entries;
    while (skipBlanks() && at_ < bytes_.size()) {
      auto key = quoted();
      if (!key || !expect('=')) return failure();
      auto value = quoted();
      if (!value || !expect(';')) return failure();
      entries.emplace_back(std::move(*key), std::move(*value));
    }
    if (!reason_.empty()) return failure();
    return entries;
  }

 private:
  std::unexpected<StringsError> fail(std::string_view reason) {
    if (reason_.empty()) reason_ = reason;
    return failure();
  }

  std::unexpected<StringsError> failure() const {
    const auto read = bytes_.substr(0, std::min(at_, bytes_.size()));
    const auto line = 1 + std::count(read.begin(), read.end(), '\n');
    return std::unexpected(StringsError{static_cast<std::size_t>(line), reason_});
  }

  /// Skips blanks and comments; false when a comment does not end.
  bool skipBlanks() {
    while (at_ < bytes_.size()) {
      const auto rest = bytes_.substr(at_);
      if (rest.front() == ' ' || rest.front() == '\t' || rest.front() == '\n' || rest.front() == '\r') {
        ++at_;
      } else if (rest.starts_with("//")) {
        at_ += std::min(rest.find('\n'), rest.size());
      } else if (rest.starts_with("/*")) {
        const auto end = rest.find("*/", 2);
        if (end == std::string_view::npos) return fail("a comment does not end"), false;
        at_ += end + 2;
      } else {
        return true;
      }
    }
    return true;
  }

  bool expect(char mark) {
    if (!skipBlanks()) return false;
    if (at_ < bytes_.size() && bytes_[at_] == mark) return ++at_, true;
    fail(mark == '=' ? "'=' is missing after a key" : "';' is missing after a text");
    return false;
  }

  std::optional<std::string> quoted() {
    if (!skipBlanks()) return std::nullopt;
    if (at_ >= bytes_.size() || bytes_[at_] != '"') return fail("'\"' is missing"), std::nullopt;
    std::string text;
    for (++at_; at_ < bytes_.size(); ++at_) {
      if (bytes_[at_] == '"') return ++at_, text;
      if (bytes_[at_] != '\\') {
        text += bytes_[at_];
      } else if (!escape(text)) {
        return std::nullopt;
      }
    }
    return fail("a text does not end"), std::nullopt;
  }

  /// Reads the escape at a backslash; the position is then its last byte.
  bool escape(std::string& text) {
    const char mark = ++at_ < bytes_.size() ? bytes_[at_] : '\0';
    switch (mark) {
      case 'n':
        text += '\n';
        return true;
      case 't':
        text += '\t';
        return true;
      case 'r':
        text += '\r';
        return true;
      case '"':
      case '\\':
      case '\'':
        text += mark;
        return true;
      case 'U':
      case 'u':
        return unicodeEscape(text);
      default:
        return fail("an escape is unknown"), false;
    }
  }

  bool unicodeEscape(std::string& text) {
    char32_t point = 0;
    for (int digit = 0; digit < 4; ++digit) {
      const auto value = ++at_ < bytes_.size() ? hexDigit(bytes_[at_]) : std::nullopt;
      if (!value) return fail("a \\U escape needs four hexadecimal digits"), false;
      point = point * 16 + *value;
    }
    if (point >= 0xD800 && point <= 0xDFFF) return fail("a \\U escape is half a character"), false;
    appendUtf8(text, point);
    return true;
  }

  static std::optional<char32_t> hexDigit(char c) {
    if (c >= '0' && c <= '9') return static_cast<char32_t>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<char32_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<char32_t>(c - 'A' + 10);
    return std::nullopt;
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  std::string reason_;
};

void appendQuoted(std::string& line, std::string_view text) {
  line += '"';
  for (const char c : text) {
    if (c == '"' || c == '\\') line += '\\';
    if (c == '\n') {
      line += "\\n";
    } else {
      line += c;
    }
  }
  line += '"';
}

}  // namespace

std::expected<StringsEntries, StringsError> parseStrings(std::string_view bytes) {
  return StringsParser(bytes).parse();
}

std::string stringsLine(std::string_view key, std::string_view value) {
  std::string line;
  appendQuoted(line, key);
  line += " = ";
  appendQuoted(line, value);
  line += ";\n";
  return line;
}

}  // namespace ostrel
