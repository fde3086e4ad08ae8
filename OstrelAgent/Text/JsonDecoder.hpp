#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace ostrel {

/// What is wrong with a document, and where.
struct JsonError {
  std::string path;      ///< of the value, "health.daemon.state" or "features[2].id"; empty for the document
  std::string reason;    ///< "is missing", "is not a text", "is not JSON"
  std::size_t line = 0;  ///< of a fault in the JSON itself, from 1; else 0
  std::size_t column = 0;  ///< likewise, in bytes

  /// All as one clause: "health.daemon.state is missing", "the document is not JSON (line 3, column 7)".
  /// Lines are counted on from those that stand before the document.
  std::string description(std::size_t linesBefore = 0) const;

  bool operator==(const JsonError&) const = default;
};

struct JsonObject;

/// One known key of an object and the place of its value: a member of the struct the object is read into.
/// Make fields with `JsonFields`.
struct JsonField {
  enum class Kind { text, boolean, integer, object, texts, objects };

  std::string_view key;
  Kind kind = Kind::text;
  bool required = true;
  const JsonObject* layout = nullptr;     ///< of an object, or of the elements of objects
  void* (*make)(void* owner) = nullptr;   ///< a fresh value in the owner's member
  void (*clear)(void* owner) = nullptr;   ///< makes an optional member absent
  void* (*append)(void* list) = nullptr;  ///< a fresh element at the end of a made list
};

/// The known keys of an object; every other key is skipped.
struct JsonObject {
  std::span<const JsonField> fields;
};

/// Reads a document into the struct that the layout describes. Types must match exactly, an integer has
/// neither fraction nor exponent and fits 64 bits; the last of a repeated key counts. Any fault fails the
/// document.
std::expected<void, JsonError> decodeJson(std::string_view bytes, const JsonObject& layout, void* target);

namespace jsonfields {

/// A member's type without its std::optional.
template <class Type>
struct Unwrapped {
  using Value = Type;
  static constexpr bool isOptional = false;
};
template <class Type>
struct Unwrapped<std::optional<Type>> {
  using Value = Type;
  static constexpr bool isOptional = true;
};

template <class Type>
inline constexpr bool isList = false;
template <class Element>
inline constexpr bool isList<std::vector<Element>> = true;

}  // namespace jsonfields

/// True when the bytes are one JSON value.
bool isJson(std::string_view bytes);

/// Makes the fields of one struct: `JsonFields<Knob>::field<&Knob::env>("env")`. A std::optional member makes
/// the key optional; members of struct type, or lists of them, take the layout of that struct.
template <class Owner>
struct JsonFields {
  template <auto Member>
  static constexpr JsonField field(std::string_view key, const JsonObject* layout = nullptr) {
    using Type = std::remove_cvref_t<decltype(std::declval<Owner&>().*Member)>;
    using Value = typename jsonfields::Unwrapped<Type>::Value;
    JsonField field{key, kindOf<Value>(), !jsonfields::Unwrapped<Type>::isOptional, layout};
    field.make = [](void* owner) -> void* {
      auto& member = static_cast<Owner*>(owner)->*Member;
      if constexpr (jsonfields::Unwrapped<Type>::isOptional) {
        return &member.emplace();
      } else {
        member = Type();
        return &member;
      }
    };
    if constexpr (jsonfields::Unwrapped<Type>::isOptional) {
      field.clear = [](void* owner) { (static_cast<Owner*>(owner)->*Member).reset(); };
    }
    if constexpr (jsonfields::isList<Value>) {
      field.append = [](void* list) -> void* { return &static_cast<Value*>(list)->emplace_back(); };
    }
    return field;
  }

 private:
  template <class Value>
  static constexpr JsonField::Kind kindOf() {
    if constexpr (std::is_same_v<Value, std::string>) return JsonField::Kind::text;
    if constexpr (std::is_same_v<Value, bool>) return JsonField::Kind::boolean;
    if constexpr (std::is_same_v<Value, std::int64_t>) return JsonField::Kind::integer;
    if constexpr (std::is_same_v<Value, std::vector<std::string>>) return JsonField::Kind::texts;
    return jsonfields::isList<Value> ? JsonField::Kind::objects : JsonField::Kind::object;
  }
};

}  // namespace ostrel
