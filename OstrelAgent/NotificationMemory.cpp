#include "OstrelAgent/NotificationMemory.hpp"

#include <utility>

namespace ostrel {

namespace {

constexpr const char* notProtectedKey = "RedNotificationLastPostedAt";
constexpr const char* containerBlocksKey = "ContainerBlockNotificationLastPostedAt";

}  // namespace

template <class T>
std::optional<T> NotificationMemory::get(const std::string& key) {
  const auto [known, isFirst] = known_.try_emplace(key);
  if (isFirst) known->second = userDefaults_.get<T>(key);
  return known->second ? std::optional(std::get<T>(*known->second)) : std::nullopt;
}

std::optional<Date> NotificationMemory::notProtected() { return get<Date>(notProtectedKey); }

void NotificationMemory::setNotProtected(std::optional<Date> date) {
  put(notProtectedKey, date ? std::optional<DefaultsValue>(*date) : std::nullopt);
}

std::map<std::string, Date> NotificationMemory::containerBlocks() {
  return get<std::map<std::string, Date>>(containerBlocksKey).value_or(std::map<std::string, Date>());
}

void NotificationMemory::setContainerBlocks(std::map<std::string, Date> dates) {
  put(containerBlocksKey, std::move(dates));
}

void NotificationMemory::put(const std::string& key, std::optional<DefaultsValue> value) {
  const auto written = value ? userDefaults_.set(key, *value) : userDefaults_.remove(key);
  known_.insert_or_assign(key, std::move(value));
  if (written) {
    unwritten_.erase(key);
  } else if (unwritten_.insert(key).second) {
    log_.line("ostrel: could not store " + key + ": " + written.error().description);
  }
}

}  // namespace ostrel
