#pragma once

#include <utility>

#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// Settings in memory, which can be written as long as the test lets them.
class FakeUserDefaults final : public UserDefaults {
 public:
  std::optional<DefaultsValue> value(const std::string& key) const override {
    const auto stored = values_.find(key);
    return stored == values_.end() ? std::nullopt : std::optional(stored->second);
  }

  std::expected<void, PlatformError> set(const std::string& key, DefaultsValue value) override {
    if (writeError) return std::unexpected(*writeError);
    values_[key] = std::move(value);
    return {};
  }

  std::expected<void, PlatformError> remove(const std::string& key) override {
    if (writeError) return std::unexpected(*writeError);
    values_.erase(key);
    return {};
  }

  std::optional<PlatformError> writeError;

 private:
  std::map<std::string, DefaultsValue> values_;
};

}  // namespace ostrel
