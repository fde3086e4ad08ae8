#pragma once

#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// The user's decision about the program's notifications; the numbers are the platform's.
enum class NotificationAuthorization { notDetermined = 0, denied = 1, authorized = 2 };

/// True when notifications appear. The platform's further numbers are kinds of permission: for quiet
/// notifications, for a limited time.
constexpr bool isAuthorized(NotificationAuthorization authorization) {
  return authorization >= NotificationAuthorization::authorized;
}

/// A button of a notification. Pressing it brings the program to the front.
struct NotificationAction {
  std::string identifier;
  std::string title;

  bool operator==(const NotificationAction&) const = default;
};

/// A category of notifications with its buttons.
struct NotificationCategory {
  std::string identifier;
  std::vector<NotificationAction> actions;

  bool operator==(const NotificationCategory&) const = default;
};

enum class NotificationSound { none, standard };

struct UserNotification {
  std::string identifier;  ///< a later notification with the same identifier replaces it
  std::string title;
  std::string body;
  std::string category;  ///< identifier of a registered category
  NotificationSound sound = NotificationSound::none;

  bool operator==(const UserNotification&) const = default;
};

/// The user's response to a notification.
struct NotificationResponse {
  enum class Case { opened, dismissed, action };

  Case kind = Case::opened;  ///< `opened` by a click on its body
  std::string category;
  std::string action = {};  ///< identifier of the pressed button, for `action`
};

/// Notifications to the user (UNUserNotificationCenter). Main thread; completions run there, never inside the
/// call.
class UserNotifications {
 public:
  virtual ~UserNotifications() = default;

  virtual void readAuthorization(std::function<void(NotificationAuthorization)> completion) = 0;

  /// Asks the user to allow alerts with sound; the completion reports whether the question could be asked.
  virtual void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) = 0;

  /// Replaces the registered categories.
  virtual void registerCategories(std::vector<NotificationCategory> categories) = 0;

  /// Sets the receiver of the user's responses, in place of an earlier one.
  virtual void onResponse(std::function<void(const NotificationResponse&)> receiver) = 0;

  /// Shows the notification now, as a banner also while the program is in front. The completion reports
  /// whether it was accepted, which is also the case without the user's authorization.
  virtual void post(const UserNotification& notification,
                    std::function<void(std::expected<void, PlatformError>)> completion) = 0;
};

}  // namespace ostrel
