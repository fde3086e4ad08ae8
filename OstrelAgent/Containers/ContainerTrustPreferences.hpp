#pragma once

#include <set>
#include <string>

#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// Which container runtimes the person wants to be told about when one of their containers is blocked. Main
/// thread.
class ContainerTrustPreferences {
 public:
  explicit ContainerTrustPreferences(const UserDefaults& defaults) : defaults_(&defaults) {}

  /// Names of runtimes; none where the settings hold no list.
  std::set<std::string> notify() const;

 private:
  const UserDefaults* defaults_;
};

}  // namespace ostrel
