#pragma once

#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Platform/Date.hpp"
#include "Platform/PlatformError.hpp"

namespace ostrel {

using DefaultsValue = std::variant<bool, std::int64_t, std::string, Date, std::vector<std::string>,
                                   std::map<std::string, Date>, std::vector<double>>;

/// The user's settings under the keys of the standard domain (UserDefaults). Main thread; calls may block for
/// a small file.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  /// The stored value, or nullopt when the key is missing or the settings cannot be read.
  virtual std::optional<DefaultsValue> value(const std::string& key) const = 0;

  /// Stores a value. On failure the stored settings stay unchanged.
  [[nodiscard]] virtual std::expected<void, PlatformError> set(const std::string& key,
                                                               DefaultsValue value) = 0;

  /// Removes a key; succeeds when it is missing.
  [[nodiscard]] virtual std::expected<void, PlatformError> remove(const std::string& key) = 0;

  /// The stored value as a T, or nullopt when it is missing or of another type.
  template <class T>
  std::optional<T> get(const std::string& key) const {
    auto stored = value(key);
    if (!stored || !std::holds_alternative<T>(*stored)) return std::nullopt;
    return std::get<T>(std::move(*stored));
  }
};

}  // namespace ostrel
