#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrel {

/// What is wrong with a document, and where.
struct JsonError {
  std::string path;      ///< of the value, "health.daemon.state" or "features[2].id"; empty for the document
  std::string reason;    ///< "is missing", "is not a text", "is not JSON"
  std::size_t line = 0;  ///< of a fault in the JSON itself, from 1; else 0
  std::size_t column = 0;  ///< likewise, in bytes

  /// "the document is not JSON (line 3, column 7)"; `linesBefore` is added to the line.
  std::string description(std::size_t linesBefore = 0) const;
};

/// Reads one value of a document. `void read(const JsonReader&, Struct&)` beside a struct reads its members.
/// Types must match exactly; an integer has neither fraction nor exponent and fits 64 bits. Reading stops at
/// the first fault and leaves the struct incomplete.
class JsonReader {
 public:
  JsonReader(const nlohmann::json& value, std::optional<JsonError>& fault) : value_(value), fault_(fault) {}

  template <class Member>
  void required(std::string_view key, Member& member) const {
    readPart(key, find(key), member);
  }

  /// Leaves the member empty when the key is missing or null.
  template <class Member>
  void optional(std::string_view key, std::optional<Member>& member) const {
    if (const auto* value = find(key); !isNull(value)) readPart(key, value, member.emplace());
  }

  void into(bool& flag) const;
  void into(std::string& text) const;
  void into(std::int64_t& number) const;

  template <class Element>
  void into(std::vector<Element>& list) const {
    const auto size = listSize();
    list.reserve(size < 64 ? size : 64);
    for (std::size_t i = 0; i < size && !fault_; ++i) {
      readPart("[" + std::to_string(i) + "]", element(i), list.emplace_back());
    }
  }

  template <class Struct>
  void into(Struct& object) const {
    if (isObject()) read(*this, object);
  }

 private:
  template <class Part>
  void readPart(std::string_view place, const nlohmann::json* value, Part& part) const {
    if (fault_) return;
    if (value == nullptr) fail("is missing");
    if (value != nullptr) JsonReader(*value, fault_).into(part);
    if (fault_) prependToPath(place);
  }

  static bool isNull(const nlohmann::json* value);
  const nlohmann::json* find(std::string_view key) const;
  const nlohmann::json* element(std::size_t index) const;
  std::size_t listSize() const;
  bool isObject() const;
  void fail(const char* reason) const { fault_ = JsonError{.path = "", .reason = reason}; }
  void prependToPath(std::string_view place) const;

  const nlohmann::json& value_;
  std::optional<JsonError>& fault_;
};

/// A document that is one object. Copies share it; any thread may read it.
class JsonObject {
 public:
  /// The last of a repeated key counts. Numbers outside the range of a double are refused.
  [[nodiscard]] static std::expected<JsonObject, JsonError> parse(std::string_view bytes);
  bool contains(std::string_view key) const;

  /// The whole object as a struct.
  template <class Struct>
  [[nodiscard]] std::expected<Struct, JsonError> as() const {
    Struct object;
    std::optional<JsonError> fault;
    JsonReader(*document_, fault).into(object);
    if (fault) return std::unexpected(std::move(*fault));
    return object;
  }

  /// The member when it has exactly this type.
  template <class Member>
  std::optional<Member> member(std::string_view key) const {
    std::optional<Member> member;
    std::optional<JsonError> fault;
    JsonReader(*document_, fault).optional(key, member);
    if (fault) member.reset();
    return member;
  }
  std::optional<bool> boolean(std::string_view key) const { return member<bool>(key); }
  std::optional<std::int64_t> integer(std::string_view key) const { return member<std::int64_t>(key); }
  std::optional<std::string> text(std::string_view key) const { return member<std::string>(key); }

 private:
  explicit JsonObject(std::shared_ptr<const nlohmann::json> document) : document_(std::move(document)) {}
  std::shared_ptr<const nlohmann::json> document_;
};

}  // namespace ostrel
