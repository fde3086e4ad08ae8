#include "SimulatedEndpoint/HelperBehaviour.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace ostrel::simulated {

namespace {

enum class Kind { flag, number, text, word };

struct Row {
  std::string_view key;
  Kind kind;
  std::int64_t least = 0;
  std::int64_t most = 0;
  std::array<std::string_view, 3> words = {};
};

constexpr std::int64_t hour = 3'600'000;
constexpr std::int64_t hundredMegabytes = 100'000'000;

constexpr std::array<Row, 13> rows = {{
    {"exit", Kind::number, 0, 255},
    {"signal", Kind::number, 1, 31},
    {"garbage", Kind::flag},
    {"hang", Kind::flag},
    {"unreapable", Kind::flag},
    {"ignore_term", Kind::flag},
    {"omit", Kind::text},
    {"pad_bytes", Kind::number, 0, hundredMegabytes},
    {"truncate_bytes", Kind::number, 0, hundredMegabytes},
    {"delay_ms", Kind::number, 0, hour},
    {"close_output_and_live_ms", Kind::number, 0, hour},
    {"send", Kind::word, 0, 0, {"sent", "retry", "error"}},
    {"only", Kind::word, 0, 0, {"status", "diagnostics", "uninstall"}},
}};

bool isWord(const Row& row, const Json& value) {
  return value.is_string() &&
         std::ranges::find(row.words, value.get_ref<const std::string&>()) != row.words.end();
}

bool isNumber(const Row& row, const Json& value) {
  if (!value.is_number_integer()) return false;
  const auto number = value.get<std::int64_t>();
  return number >= row.least && number <= row.most;
}

/// What the value of a row must be, or nothing when it is.
std::optional<std::string> unmet(const Row& row, const Json& value) {
  switch (row.kind) {
    case Kind::flag:
      if (value.is_boolean()) return std::nullopt;
      return "true or false";
    case Kind::number:
      if (isNumber(row, value)) return std::nullopt;
      return "a number from " + std::to_string(row.least) + " to " + std::to_string(row.most);
    case Kind::text:
      if (value.is_string()) return std::nullopt;
      return "a text";
    case Kind::word:
      if (isWord(row, value)) return std::nullopt;
      return std::string(row.words[0]) + ", " + std::string(row.words[1]) + " or " +
             std::string(row.words[2]);
  }
  return std::nullopt;
}

std::string knownKeys() {
  std::string keys;
  for (const auto& row : rows) keys += (keys.empty() ? "" : ", ") + std::string(row.key);
  return keys;
}

Sending sendingOf(const std::string& word) {
  if (word == "retry") return Sending::retry;
  return word == "error" ? Sending::error : Sending::sent;
}

}  // namespace

std::optional<std::string> helperFault(const Json& helper) {
  if (!helper.is_object()) return "\"helper\" must be an object";
  for (const auto& [key, value] : helper.items()) {
    const auto* row = std::ranges::find(rows, key, &Row::key);
    if (row == rows.end()) return "\"helper\" has no key " + inQuotes(key) + "; it knows " + knownKeys();
    if (auto wanted = unmet(*row, value)) return inQuotes("helper." + key) + " must be " + *wanted;
  }
  return std::nullopt;
}

HelperBehaviour helperBehaviour(const Json& helper, std::string_view command) {
  HelperBehaviour behaviour;
  if (helper.value("only", std::string(command)) != command) return behaviour;
  behaviour.exitStatus = helper.value("exit", 0);
  behaviour.signal = helper.value("signal", 0);
  behaviour.printsGarbage = helper.value("garbage", false);
  behaviour.hangs = helper.value("hang", false);
  behaviour.isUnreapable = helper.value("unreapable", false);
  behaviour.ignoresTermination = helper.value("ignore_term", false);
  behaviour.omittedKey = helper.value("omit", std::string());
  behaviour.padBytes = helper.value("pad_bytes", std::size_t{0});
  if (helper.contains("truncate_bytes"))
    behaviour.truncateBytes = helper["truncate_bytes"].get<std::size_t>();
  behaviour.delay = std::chrono::milliseconds(helper.value("delay_ms", 0));
  if (helper.contains("close_output_and_live_ms")) {
    behaviour.livesAfterClosingOutput =
        std::chrono::milliseconds(helper["close_output_and_live_ms"].get<int>());
  }
  behaviour.sending = sendingOf(helper.value("send", std::string()));
  return behaviour;
}

std::string printedReport(Json report, const HelperBehaviour& behaviour) {
  if (!behaviour.omittedKey.empty()) report.erase(behaviour.omittedKey);
  auto text = printJson(report);
  if (behaviour.padBytes <= text.size()) return text;
  report["padding"] = "";
  text = printJson(report);
  if (behaviour.padBytes > text.size()) {
    text.insert(text.rfind('"'), behaviour.padBytes - text.size(), 'x');
  }
  return text;
}

std::string distorted(std::string text, const HelperBehaviour& behaviour) {
  if (behaviour.printsGarbage)
    text = "panic: runtime error\n{\"version\": \xff\xfe, goroutine 1 [running]:\n";
  if (behaviour.truncateBytes && *behaviour.truncateBytes < text.size())
    text.resize(*behaviour.truncateBytes);
  return text;
}

}  // namespace ostrel::simulated
