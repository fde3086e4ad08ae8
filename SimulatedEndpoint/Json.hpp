#pragma once

#include <expected>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace ostrel::simulated {

/// Keeps the keys in the order in which they were written.
using Json = nlohmann::ordered_json;

/// The value of a JSON text, or a sentence on what is wrong and where.
[[nodiscard]] std::expected<Json, std::string> parseJson(std::string_view text);

/// The value of what a user typed: JSON when it reads as JSON, else the text itself.
[[nodiscard]] std::expected<Json, std::string> jsonOrText(const std::string& typed);

/// Whether the value is flat enough to be walked by recursion.
bool isShallow(const Json& value);

/// A word in quotation marks, for a sentence.
std::string inQuotes(std::string_view word);

/// The keys of an object, for a sentence: "exit, signal, hang".
std::string keyList(const Json& object);

/// Indented text with a line feed at its end; bytes that are not UTF-8 are replaced.
std::string printJson(const Json& value);

}  // namespace ostrel::simulated
