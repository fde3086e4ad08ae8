#pragma once

#include <set>
#include <string>

#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// The container runtimes whose blocked containers the user wants to be notified about. Main thread.
class ContainerTrustPreferences {
 public:
  explicit ContainerTrustPreferences(const UserDefaults& defaults) : defaults_(&defaults) {}

  /// Names of runtimes; empty when the settings hold no list.
  std::set<std::string> notify() const;

 private:
  const UserDefaults* defaults_;
};

}  // namespace ostrel
