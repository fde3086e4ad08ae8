#include "SimulatedEndpoint/Json.hpp"

#include <algorithm>
#include <utility>

namespace ostrel::simulated {

namespace {

constexpr int maxDepth = 64;

bool isWithinDepth(const Json& value, int depth) {
  if (!value.is_structured()) return true;
  if (depth == 0) return false;
  return std::ranges::all_of(value, [&](const Json& element) { return isWithinDepth(element, depth - 1); });
}

std::string withoutTag(std::string_view message) {
  auto tagEnd = message.find("] ");
  if (message.starts_with('[') && tagEnd != std::string_view::npos) message.remove_prefix(tagEnd + 2);
  return std::string(message);
}

}  // namespace

std::expected<Json, std::string> parseJson(std::string_view text) {
  try {
    auto value = Json::parse(text);
    if (!isShallow(value)) return std::unexpected("is nested too deeply");
    return value;
  } catch (const Json::exception& error) {
    return std::unexpected("is not JSON: " + withoutTag(error.what()));
  }
}

std::expected<Json, std::string> jsonOrText(const std::string& typed) try {
  if (auto value = parseJson(typed)) return value;
  Json text = typed;
  (void)text.dump();
  return text;
} catch (const Json::exception&) {
  return std::unexpected("the value is not UTF-8 text");
}

bool isShallow(const Json& value) { return isWithinDepth(value, maxDepth); }

std::string inQuotes(std::string_view word) {
  std::string text(1, '"');
  text += word;
  return text += '"';
}

std::string keyList(const Json& object) {
  std::string keys;
  for (const auto& [key, value] : object.items()) {
    if (!keys.empty()) keys += ", ";
    keys += key;
  }
  return keys;
}

std::string printJson(const Json& value) {
  return value.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace ostrel::simulated
