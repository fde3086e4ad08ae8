#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel {

/// The members of a JSON object by name. What a member holds is read when it is asked for, so that no nesting
/// of the values, however deep, costs more than its bytes.
class JsonMembers {
 public:
  /// The members of the object that the bytes are, the last of a repeated name; nothing when they are not one
  /// JSON object.
  static std::optional<JsonMembers> of(std::string_view bytes);

  /// The member when it is true or false.
  std::optional<bool> boolean(std::string_view name) const;

  /// The member when it is an integer of 64 bits, written without fraction and exponent.
  std::optional<std::int64_t> integer(std::string_view name) const;

  /// The member when it is a text.
  std::optional<std::string> text(std::string_view name) const;

  /// The JSON of the member whatever it is, or nothing when it is missing. The view lasts as long as this.
  std::optional<std::string_view> json(std::string_view name) const;

 private:
  std::map<std::string, std::string, std::less<>> members_;
};

}  // namespace ostrel
