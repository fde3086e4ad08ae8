#pragma once

#include <expected>
#include <functional>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// What the person has decided about notifications of the program; the numbers are the platform's.
enum class NotificationAuthorization { notDetermined = 0, denied = 1, authorized = 2 };

/// Notifications to the person (UNUserNotificationCenter). Main thread; completions run there, never inside
/// the call.
class UserNotifications {
 public:
  virtual ~UserNotifications() = default;

  virtual void readAuthorization(std::function<void(NotificationAuthorization)> completion) = 0;

  /// Asks the person for alerts with sound; the completion tells whether the question could be asked.
  virtual void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) = 0;
};

}  // namespace ostrel
