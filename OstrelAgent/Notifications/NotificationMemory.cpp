#include "OstrelAgent/Notifications/NotificationMemory.hpp"

#include <utility>

namespace ostrel {

namespace {

constexpr const char* notProtectedKey = "RedNotificationLastPostedAt";
constexpr const char* containerBlocksKey = "ContainerBlockNotificationLastPostedAt";

}  // namespace

template <class T>
std::optional<T> NotificationMemory::get(const std::string& key) const {
  const auto kept = unwritten_.find(key);
  if (kept == unwritten_.end()) return userDefaults_.get<T>(key);
  return kept->second ? std::optional(std::get<T>(*kept->second)) : std::nullopt;
}

std::optional<Date> NotificationMemory::notProtected() const { return get<Date>(notProtectedKey); }

void NotificationMemory::setNotProtected(std::optional<Date> date) {
  put(notProtectedKey, date ? std::optional<DefaultsValue>(*date) : std::nullopt);
}

std::map<std::string, Date> NotificationMemory::containerBlocks() const {
  return get<std::map<std::string, Date>>(containerBlocksKey).value_or(std::map<std::string, Date>());
}

void NotificationMemory::setContainerBlocks(std::map<std::string, Date> dates) {
  put(containerBlocksKey, std::move(dates));
}

void NotificationMemory::put(const std::string& key, std::optional<DefaultsValue> value) {
  const auto written = value ? userDefaults_.set(key, *value) : userDefaults_.remove(key);
  if (written) {
    unwritten_.erase(key);
    return;
  }
  const bool isNew = unwritten_.insert_or_assign(key, std::move(value)).second;
  if (isNew) log_.line("ostrel: could not store " + key + ": " + written.error().description);
}

}  // namespace ostrel
