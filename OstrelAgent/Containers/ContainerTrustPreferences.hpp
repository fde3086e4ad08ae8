#pragma once

#include <expected>
#include <functional>
#include <set>
#include <string>

#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// The container runtimes whose blocked containers the user wants to be notified about. Main thread.
class ContainerTrustPreferences {
 public:
  explicit ContainerTrustPreferences(UserDefaults& defaults) : defaults_(defaults) {}

  /// Names of runtimes, unknown ones included; empty when the settings hold no list.
  std::set<std::string> notify() const;

  /// Adds or removes a name. On failure the stored names stay unchanged.
  [[nodiscard]] std::expected<void, PlatformError> setNotify(const std::string& runtime, bool isOn);

  /// Replaces all names; names that are stored already are not stored again.
  [[nodiscard]] std::expected<void, PlatformError> setAll(const std::set<std::string>& runtimes);

  /// Runs after runtimes were switched on; may be empty.
  std::function<void()> onEnable;

 private:
  UserDefaults& defaults_;
};

}  // namespace ostrel
