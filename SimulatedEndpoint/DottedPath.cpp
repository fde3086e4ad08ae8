#include "SimulatedEndpoint/DottedPath.hpp"

#include <algorithm>
#include <charconv>
#include <ranges>
#include <utility>
#include <vector>

namespace ostrel::simulated {

namespace {

std::vector<std::string> segments(std::string_view path) {
  std::vector<std::string> parts(1);
  for (const char character : path) {
    if (character == '.') {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

std::string kindOf(const Json& value) {
  if (value.is_string()) return "a text";
  if (value.is_boolean()) return "true or false";
  return "a number";
}

[[nodiscard]] std::expected<Json*, std::string> element(Json& list, const std::string& segment,
                                                        const std::string& place) {
  std::size_t index = 0;
  const auto* const last = segment.data() + segment.size();
  const auto [end, error] = std::from_chars(segment.data(), last, index);
  if (error == std::errc() && end == last && index <= list.size()) {
    if (index == list.size()) list.push_back(nullptr);
    return &list[index];
  }
  return std::unexpected(place + " is a list of " + std::to_string(list.size()) + "; " + inQuotes(segment) +
                         " is no index of it (the first is 0)");
}

[[nodiscard]] std::expected<Json*, std::string> child(Json& parent, const std::string& segment,
                                                      const std::string& place) {
  if (parent.is_array()) return element(parent, segment, place);
  if (parent.is_null() || parent.is_object()) return &parent[segment];
  return std::unexpected(place + " is " + kindOf(parent) + ", so it has no " + inQuotes(segment));
}

}  // namespace

std::expected<void, std::string> setAtPath(Json& document, std::string_view path, Json value) {
  const auto parts = segments(path);
  if (std::ranges::find(parts, "") != parts.end()) {
    return std::unexpected(inQuotes(path) + " has an empty segment");
  }
  if (!document.contains(parts.front())) {
    return std::unexpected("there is no " + inQuotes(parts.front()) +
                           " in a scenario; a key begins with one of " + keyList(document));
  }
  Json* place = &document;
  std::string way;
  for (const auto& part : parts) {
    auto next = child(*place, part, way);
    if (!next) return std::unexpected(next.error());
    place = *next;
    if (!way.empty()) way += '.';
    way += part;
  }
  *place = std::move(value);
  return {};
}

bool pathsTouch(std::string_view one, std::string_view other) {
  if (one.size() > other.size()) std::swap(one, other);
  return other.starts_with(one) && (one.empty() || one.size() == other.size() || other[one.size()] == '.');
}

}  // namespace ostrel::simulated
