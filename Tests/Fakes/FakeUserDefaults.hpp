#pragma once

#include <utility>

#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// Settings in memory.
class FakeUserDefaults final : public UserDefaults {
 public:
  std::optional<DefaultsValue> value(const std::string& key) const override {
    const auto stored = values_.find(key);
    return stored == values_.end() ? std::nullopt : std::optional(stored->second);
  }

  std::expected<void, PlatformError> set(const std::string& key, DefaultsValue value) override {
    values_[key] = std::move(value);
    return {};
  }

  std::expected<void, PlatformError> remove(const std::string& key) override {
    values_.erase(key);
    return {};
  }

 private:
  std::map<std::string, DefaultsValue> values_;
};

}  // namespace ostrel
