#pragma once

#include "Platform/MainQueue.hpp"
#include "Platform/SimulatedMac/SimulatedOverrides.hpp"
#include "Platform/UserNotifications.hpp"

namespace ostrel {

/// The shell's notifications, with the user's authorization from overrides. After the override "denied" or
/// "authorized" the user is not asked; after "denied" no notification is shown.
class SimulatedUserNotifications final : public UserNotifications {
 public:
  SimulatedUserNotifications(UserNotifications& shells, const SimulatedOverrides& overrides,
                             MainQueue& mainQueue)
      : shells_(shells), overrides_(overrides), mainQueue_(mainQueue) {}

  void readAuthorization(std::function<void(NotificationAuthorization)> completion) override;
  void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) override;
  void registerCategories(std::vector<NotificationCategory> categories) override;
  void onResponse(std::function<void(const NotificationResponse&)> receiver) override;
  void post(const UserNotification& notification,
            std::function<void(std::expected<void, PlatformError>)> completion) override;

 private:
  UserNotifications& shells_;
  const SimulatedOverrides& overrides_;
  MainQueue& mainQueue_;
};

}  // namespace ostrel
