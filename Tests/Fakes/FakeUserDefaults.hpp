#pragma once

#include <utility>

#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// Settings in memory. An error that is set meets every change.
class FakeUserDefaults final : public UserDefaults {
 public:
  std::optional<DefaultsValue> value(const std::string& key) const override {
    const auto stored = values.find(key);
    return stored == values.end() ? std::nullopt : std::optional(stored->second);
  }

  std::expected<void, PlatformError> set(const std::string& key, DefaultsValue value) override {
    if (changeError) return std::unexpected(*changeError);
    values[key] = std::move(value);
    return {};
  }

  std::expected<void, PlatformError> remove(const std::string& key) override {
    if (changeError) return std::unexpected(*changeError);
    values.erase(key);
    return {};
  }

  std::map<std::string, DefaultsValue> values;
  std::optional<PlatformError> changeError;
};

}  // namespace ostrel
