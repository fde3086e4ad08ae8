#include "OstrelAgent/Text/JsonMembers.hpp"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "OstrelAgent/Text/JsonDecoder.hpp"

namespace ostrel {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view space = " \t\n\r";

std::string decodedText(std::string_view quoted) { return nlohmann::json::parse(quoted).get<std::string>(); }

/// Walks along JSON that is known to be well-formed.
class Scanner {
 public:
  explicit Scanner(std::string_view bytes) : rest_(bytes) {
    if (rest_.starts_with(byteOrderMark)) rest_.remove_prefix(byteOrderMark.size());
  }

  /// Passes the character when it comes next.
  bool take(char wanted) {
    skipSpace();
    const bool isNext = rest_.starts_with(wanted);
    if (isNext) rest_.remove_prefix(1);
    return isNext;
  }

  /// Passes a text; gives it in its quotes.
  std::string_view takeQuoted() {
    skipSpace();
    return takeFirst(quotedLength(0));
  }

  /// Passes the value of a member; gives it without white space at its ends.
  std::string_view takeValue() {
    skipSpace();
    std::size_t end = 0;
    for (std::size_t depth = 0; depth > 0 || (rest_[end] != ',' && rest_[end] != '}');) {
      const char c = rest_[end];
      if (c == '{' || c == '[') ++depth;
      if (c == '}' || c == ']') --depth;
      end += c == '"' ? quotedLength(end) : 1;
    }
    const auto value = takeFirst(end);
    return value.substr(0, value.find_last_not_of(space) + 1);
  }

 private:
  void skipSpace() { rest_.remove_prefix(std::min(rest_.find_first_not_of(space), rest_.size())); }

  std::size_t quotedLength(std::size_t start) const {
    auto end = start + 1;
    while (rest_[end] != '"') end += rest_[end] == '\\' ? 2 : 1;
    return end + 1 - start;
  }

  std::string_view takeFirst(std::size_t length) {
    const auto first = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return first;
  }

  std::string_view rest_;
};

}  // namespace

std::optional<JsonMembers> JsonMembers::of(std::string_view bytes) {
  Scanner scanner(bytes);
  if (!scanner.take('{') || !isJson(bytes)) return std::nullopt;
  JsonMembers object;
  while (!scanner.take('}')) {
    (void)scanner.take(',');
    auto name = decodedText(scanner.takeQuoted());
    (void)scanner.take(':');
    object.members_[std::move(name)] = scanner.takeValue();
  }
  return object;
}

std::optional<bool> JsonMembers::boolean(std::string_view name) const {
  const auto value = json(name);
  if (value == "true") return true;
  if (value == "false") return false;
  return std::nullopt;
}

std::optional<std::int64_t> JsonMembers::integer(std::string_view name) const {
  const auto value = json(name);
  if (!value) return std::nullopt;
  std::int64_t number = 0;
  const auto* const last = value->data() + value->size();
  const auto [end, error] = std::from_chars(value->data(), last, number);
  if (error != std::errc() || end != last) return std::nullopt;
  return number;
}

std::optional<std::string> JsonMembers::text(std::string_view name) const {
  const auto value = json(name);
  if (!value || !value->starts_with('"')) return std::nullopt;
  return decodedText(*value);
}

std::optional<std::string_view> JsonMembers::json(std::string_view name) const {
  const auto member = members_.find(name);
  if (member == members_.end()) return std::nullopt;
  return member->second;
}

}  // namespace ostrel
