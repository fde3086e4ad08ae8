#include "SimulatedEndpoint/FaultMode.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace ostrel::simulated {

namespace {

constexpr std::size_t hugeAnswer = std::size_t{8} * 1024 * 1024;
constexpr std::array<std::string_view, 7> plainKinds = {"torn", "silent", "close-early", "garbage",
                                                        "huge", "array",  "refuse"};

std::string line(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<int> millisecondsOf(const std::string& word) {
  int value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc() || end != word.data() + word.size() || value < 0) return std::nullopt;
  return value;
}

std::string memberOf(const Json& order, const char* key) {
  if (!order.is_object() || !order.contains(key) || !order[key].is_string()) return "";
  return order[key];
}

std::string refusal(const std::string& reason) {
  Json answer = {{"ok", false}, {"error", "The background service refuses, as it was ordered to."}};
  if (!reason.empty()) answer["reason"] = reason;
  return line(answer);
}

std::string padded(Json answer) {
  answer["padding"] = std::string(hugeAnswer, 'x');
  return line(answer);
}

}  // namespace

std::expected<Json, std::string> misbehaviourOrder(std::span<const std::string> words) {
  const auto kind = words.empty() ? std::string() : words.front();
  if (words.size() == 1 && kind == "none") return Json();
  if (words.size() == 1 && std::ranges::count(plainKinds, kind) > 0) return Json{{"kind", kind}};
  if (kind == "refuse" && words.size() == 2) return Json{{"kind", kind}, {"reason", words[1]}};
  if (kind == "slow" && words.size() == 2) {
    if (const auto delay = millisecondsOf(words[1])) return Json{{"kind", kind}, {"milliseconds", *delay}};
  }
  return std::unexpected(
      "misbehave takes one of: slow MILLISECONDS, torn, silent, close-early, garbage, huge, array, "
      "refuse [REASON], none");
}

bool closesEarly(const Json& order) { return memberOf(order, "kind") == "close-early"; }

Reply misbehavingReply(const Json& order, const std::function<Json()>& answer) {
  const auto kind = memberOf(order, "kind");
  if (kind == "silent") return {.bytes = "", .isSilent = true};
  if (kind == "close-early") return {};
  if (kind == "garbage") return {.bytes = "\xff\xfe no answer {\n"};
  if (kind == "refuse") return {.bytes = refusal(memberOf(order, "reason"))};
  if (kind == "huge") return {.bytes = padded(answer())};
  auto bytes = line(answer());
  if (kind == "torn") bytes.resize(bytes.size() / 2);
  if (kind == "array") return {.bytes = "[" + bytes.substr(0, bytes.size() - 1) + "]\n"};
  if (kind != "slow") return {.bytes = bytes};
  const auto delay = order.contains("milliseconds") && order["milliseconds"].is_number_integer()
                         ? order["milliseconds"].get<int>()
                         : 0;
  return {.bytes = bytes, .delay = std::chrono::milliseconds(delay)};
}

}  // namespace ostrel::simulated
