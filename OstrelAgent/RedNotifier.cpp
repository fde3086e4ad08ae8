#include "OstrelAgent/RedNotifier.hpp"

namespace ostrel {

void RedNotifier::requestAuthorizationIfNeeded(UserNotifications& notifications, Log& log) {
  notifications.readAuthorization([&notifications, &log](NotificationAuthorization authorization) {
    if (authorization != NotificationAuthorization::notDetermined) return;
    notifications.requestAuthorization([&log](const std::expected<void, PlatformError>& asked) {
      if (!asked) log.line("ostrel: notification authorization request failed: " + asked.error().description);
    });
  });
}

}  // namespace ostrel
