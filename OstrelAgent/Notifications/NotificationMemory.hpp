#pragma once

#include <map>
#include <optional>
#include <string>

#include "Platform/Log.hpp"
#include "Platform/UserDefaults.hpp"

namespace ostrel {

/// When notifications were last posted, in the user's settings. Dates that cannot be stored are kept in
/// memory, so that a notification is not repeated every minute. Main thread.
class NotificationMemory {
 public:
  NotificationMemory(UserDefaults& userDefaults, Log& log) : userDefaults_(userDefaults), log_(log) {}

  /// Date of the latest not-protected notification.
  std::optional<Date> notProtected() const;
  void setNotProtected(std::optional<Date> date);

  /// Dates of the latest container-blocked notifications, by runtime.
  std::map<std::string, Date> containerBlocks() const;
  void setContainerBlocks(std::map<std::string, Date> dates);

 private:
  template <class T>
  std::optional<T> get(const std::string& key) const;
  void put(const std::string& key, std::optional<DefaultsValue> value);

  UserDefaults& userDefaults_;
  Log& log_;
  std::map<std::string, std::optional<DefaultsValue>> unwritten_;
};

}  // namespace ostrel
