#include "OstrelAgent/Text/Json.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace ostrel {

namespace {

/// The position of the parser's error, from its count of read bytes.
JsonError syntaxError(std::string_view bytes, std::size_t bytesRead) {
  if (bytesRead > bytes.size()) return {.path = "", .reason = "ends before its JSON does"};
  const auto read = bytes.substr(0, std::max<std::size_t>(bytesRead, 1) - 1);
  const auto line = 1 + static_cast<std::size_t>(std::ranges::count(read, '\n'));
  return {.path = "", .reason = "is not JSON", .line = line, .column = read.size() - read.rfind('\n')};
}

}  // namespace

std::string JsonError::description(std::size_t linesBefore) const {
  auto text = (path.empty() ? std::string("the document") : path) + " " + reason;
  if (line == 0) return text;
  return text + " (line " + std::to_string(linesBefore + line) + ", column " + std::to_string(column) + ")";
}

void JsonReader::into(bool& flag) const {
  if (!value_.is_boolean()) return fail("is not true or false");
  flag = value_.get<bool>();
}

void JsonReader::into(std::string& text) const {
  if (!value_.is_string()) return fail("is not a text");
  text = value_.get_ref<const std::string&>();
}

void JsonReader::into(std::int64_t& number) const {
  const bool isLarge =
      value_.is_number_unsigned() && !std::in_range<std::int64_t>(value_.get<std::uint64_t>());
  if (!value_.is_number_integer() || isLarge) return fail("is not a whole number of 64 bits");
  number = value_.get<std::int64_t>();
}

bool JsonReader::isNull(const nlohmann::json* value) { return value == nullptr || value->is_null(); }

const nlohmann::json* JsonReader::find(std::string_view key) const {
  const auto member = value_.find(key);
  return member == value_.end() ? nullptr : &*member;
}
const nlohmann::json* JsonReader::element(std::size_t index) const { return &value_[index]; }
std::size_t JsonReader::listSize() const {
  if (!value_.is_array()) fail("is not a list");
  return value_.size();
}

bool JsonReader::isObject() const {
  if (!value_.is_object()) fail("is not an object");
  return value_.is_object();
}

void JsonReader::prependToPath(std::string_view place) const {
  auto& path = fault_->path;
  if (!path.empty() && !path.starts_with('[')) path.insert(0, ".");
  path.insert(0, place);
}

std::expected<JsonObject, JsonError> JsonObject::parse(std::string_view bytes) try {
  auto document = std::make_shared<const nlohmann::json>(nlohmann::json::parse(bytes));
  // The parser treats a NUL byte as the end of the document.
  if (const auto end = bytes.find('\0'); end != bytes.npos)
    return std::unexpected(syntaxError(bytes, end + 1));
  if (!document->is_object()) return std::unexpected(JsonError{.path = "", .reason = "is not an object"});
  return JsonObject(std::move(document));
} catch (const nlohmann::json::parse_error& error) {
  return std::unexpected(syntaxError(bytes, error.byte));
} catch (const nlohmann::json::out_of_range&) {
  return std::unexpected(JsonError{.path = "", .reason = "has a number that is too large"});
}

bool JsonObject::contains(std::string_view key) const { return document_->contains(key); }

}  // namespace ostrel
