#pragma once

#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// What the person has decided about notifications of the program; the numbers are the platform's.
enum class NotificationAuthorization { notDetermined = 0, denied = 1, authorized = 2 };

/// A button of a notification. Pressing it brings the program to the front.
struct NotificationAction {
  std::string identifier;
  std::string title;

  bool operator==(const NotificationAction&) const = default;
};

/// A kind of notification, with the buttons that its notifications have.
struct NotificationCategory {
  std::string identifier;
  std::vector<NotificationAction> actions;

  bool operator==(const NotificationCategory&) const = default;
};

enum class NotificationSound { none, standard };

struct UserNotification {
  std::string identifier;  ///< a later notification of the same identifier takes its place
  std::string title;
  std::string body;
  std::string category;  ///< identifier of a registered one
  NotificationSound sound = NotificationSound::none;

  bool operator==(const UserNotification&) const = default;
};

/// What the person did with a notification.
struct NotificationResponse {
  enum class Case { opened, dismissed, action };

  Case kind = Case::opened;  ///< `opened` by a click on its body
  std::string category;
  std::string action = {};  ///< identifier of the pressed button, of `action`
};

/// Notifications to the person (UNUserNotificationCenter). Main thread; completions run there, never inside
/// the call.
class UserNotifications {
 public:
  virtual ~UserNotifications() = default;

  virtual void readAuthorization(std::function<void(NotificationAuthorization)> completion) = 0;

  /// Asks the person for alerts with sound; the completion tells whether the question could be asked.
  virtual void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) = 0;

  /// Makes these all the kinds there are.
  virtual void registerCategories(std::vector<NotificationCategory> categories) = 0;

  /// Takes what the person does with notifications, in place of an earlier receiver.
  virtual void onResponse(std::function<void(const NotificationResponse&)> receiver) = 0;

  /// Shows the notification now, as a banner also while the program is in front. The completion tells whether
  /// it was accepted, which it is without the person's authorization, too.
  virtual void post(const UserNotification& notification,
                    std::function<void(std::expected<void, PlatformError>)> completion) = 0;
};

}  // namespace ostrel
