#include "SimulatedEndpoint/PropertyList.hpp"

#include <charconv>
#include <optional>
#include <utility>

namespace ostrel::simulated {

namespace {

constexpr int deepest = 16;
constexpr std::string_view blanks = " \t\r\n";

std::optional<std::string> unescaped(std::string_view text) {
  constexpr std::pair<std::string_view, char> entities[] = {
      {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&#13;", '\r'}};
  std::string plain;
  while (!text.empty()) {
    std::size_t length = 1;
    char character = text.front();
    for (const auto& [entity, meaning] : entities) {
      if (!text.starts_with(entity)) continue;
      character = meaning;
      length = entity.size();
    }
    if (text.front() == '&' && length == 1) return std::nullopt;
    plain += character;
    text.remove_prefix(length);
  }
  return plain;
}

/// Reads from the front of a text. A value is null where the text has a fault; there is no other null.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  Json document() {
    skipPast("<?xml", "?>");
    skipPast("<!DOCTYPE", ">");
    if (!take("<plist version=\"1.0\">")) return nullptr;
    auto value = this->value(deepest);
    if (!take("</plist>")) return nullptr;
    skipBlanks();
    return rest_.empty() ? value : nullptr;
  }

 private:
  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size())); }

  bool take(std::string_view tag) {
    skipBlanks();
    if (!rest_.starts_with(tag)) return false;
    rest_.remove_prefix(tag.size());
    return true;
  }

  void skipPast(std::string_view start, std::string_view end) {
    skipBlanks();
    const auto place = rest_.find(end);
    if (rest_.starts_with(start) && place != std::string_view::npos) rest_.remove_prefix(place + end.size());
  }

  /// The text up to the tag; both are consumed.
  std::optional<std::string> textUntil(std::string_view tag) {
    const auto end = rest_.find('<');
    if (end == std::string_view::npos || !rest_.substr(end).starts_with(tag)) return std::nullopt;
    auto text = unescaped(rest_.substr(0, end));
    rest_.remove_prefix(end + tag.size());
    return text;
  }

  Json value(int depth) {
    if (depth == 0) return nullptr;
    if (take("<true/>")) return true;
    if (take("<false/>")) return false;
    if (take("<string/>")) return "";
    if (take("<array/>")) return Json::array();
    if (take("<dict/>")) return Json::object();
    if (take("<string>")) return string();
    if (take("<integer>")) return integer();
    if (take("<array>")) return array(depth);
    return take("<dict>") ? dictionary(depth) : Json();
  }

  Json string() {
    auto text = textUntil("</string>");
    return text ? Json(*std::move(text)) : Json();
  }

  Json integer() {
    const auto text = textUntil("</integer>").value_or("");
    long long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? Json(number) : Json();
  }

  Json array(int depth) {
    auto list = Json::array();
    while (!take("</array>")) {
      auto element = value(depth - 1);
      if (element.is_null()) return nullptr;
      list.push_back(std::move(element));
    }
    return list;
  }

  Json dictionary(int depth) {
    auto object = Json::object();
    while (!take("</dict>")) {
      if (!take("<key>")) return nullptr;
      const auto key = textUntil("</key>");
      auto member = value(depth - 1);
      if (!key || object.contains(*key) || member.is_null()) return nullptr;
      object[*key] = std::move(member);
    }
    return object;
  }

  std::string_view rest_;
};

}  // namespace

std::expected<Json, std::string> parsePropertyList(std::string_view text) {
  auto value = Reader(text).document();
  if (value.is_null()) return std::unexpected("is no property list");
  return value;
}

}  // namespace ostrel::simulated
