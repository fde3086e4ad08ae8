#include "Platform/SimulatedMac/SimulatedUserNotifications.hpp"

#include <optional>
#include <utility>

namespace ostrel {

using Authorization = NotificationAuthorization;

void SimulatedUserNotifications::readAuthorization(std::function<void(Authorization)> completion) {
  const auto overridden = overrides_.notificationAuthorization();
  if (!overridden) return shells_.readAuthorization(std::move(completion));
  mainQueue_.post(
      [authorization = *overridden, completion = std::move(completion)] { completion(authorization); });
}

void SimulatedUserNotifications::requestAuthorization(
    std::function<void(std::expected<void, PlatformError>)> completion) {
  const auto overridden = overrides_.notificationAuthorization();
  const bool isDecided = overridden && *overridden != Authorization::notDetermined;
  if (!isDecided) return shells_.requestAuthorization(std::move(completion));
  mainQueue_.post([completion = std::move(completion)] { completion({}); });
}

void SimulatedUserNotifications::registerCategories(std::vector<NotificationCategory> categories) {
  shells_.registerCategories(std::move(categories));
}

void SimulatedUserNotifications::onResponse(std::function<void(const NotificationResponse&)> receiver) {
  shells_.onResponse(std::move(receiver));
}

void SimulatedUserNotifications::post(const UserNotification& notification,
                                      std::function<void(std::expected<void, PlatformError>)> completion) {
  if (overrides_.notificationAuthorization() != Authorization::denied) {
    return shells_.post(notification, std::move(completion));
  }
  mainQueue_.post([completion = std::move(completion)] { completion({}); });
}

}  // namespace ostrel
