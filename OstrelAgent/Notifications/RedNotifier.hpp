#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OstrelAgent/Notifications/NotificationMemory.hpp"
#include "OstrelAgent/Notifications/RedNotificationGate.hpp"
#include "Platform/Log.hpp"
#include "Platform/UserNotifications.hpp"

namespace ostrel {

/// Notifies the user when this Mac is not protected and when a container was blocked. Main thread; callbacks
/// hold it weakly.
class RedNotifier : public std::enable_shared_from_this<RedNotifier> {
 public:
  struct Services {
    UserNotifications& notifications;
    UserDefaults& userDefaults;
    Log& log;
  };

  /// `openRepairFlow` runs when the user asks for the fix.
  RedNotifier(Services services, std::function<void()> openRepairFlow);

  /// Asks the user to allow alerts with sound, unless that was decided before; logs when the question cannot
  /// be asked. `answered` runs at the end, whatever came of it.
  static void requestAuthorizationIfNeeded(
      UserNotifications& notifications, Log& log, std::function<void()> answered = [] {});

  /// Registers the notification buttons, handles clicks, and logs when notifications cannot be shown. Call
  /// once, before the first reading.
  void start();

  /// Processes the verdict of one reading and posts the notification when it is due.
  void observe(const ProtectionVerdict& verdict, Date now);

  /// Processes the container runtimes with a blocked download and posts a notification for each enabled one
  /// that is due.
  void observeContainerBlocks(const std::vector<std::string>& blocked, const std::set<std::string>& enabled,
                              Date now);

  /// Runs when the user asks for the container trust guide; may be empty.
  std::function<void()> openContainerTrust;

 private:
  void postNotProtected();
  void postContainerBlocked(const std::string& runtime, std::function<void()> accepted);
  void rememberContainerBlock(const std::string& runtime, Date now);
  void respond(const NotificationResponse& response) const;

  Services services_;
  std::function<void()> openRepairFlow_;
  NotificationMemory memory_;
  std::vector<RedSpan> closedRuns_;
  std::optional<RedSpan> openRun_;
};

}  // namespace ostrel
