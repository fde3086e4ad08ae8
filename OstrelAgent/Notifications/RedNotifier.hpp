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

/// Tells the person when this Mac is not protected, and when a container was blocked. Main thread; the
/// services outlive it and its answers, which hold it weakly.
class RedNotifier : public std::enable_shared_from_this<RedNotifier> {
 public:
  struct Services {
    UserNotifications& notifications;
    UserDefaults& userDefaults;
    Log& log;
  };

  /// `openRepairFlow` runs when the person asks for the fix.
  RedNotifier(Services services, std::function<void()> openRepairFlow);

  /// Asks the person for alerts with sound, unless that was decided before. A question that cannot be asked
  /// is told in the log.
  static void requestAuthorizationIfNeeded(UserNotifications& notifications, Log& log);

  /// Registers what notifications offer, takes their clicks, and tells the log when none can be shown. Call
  /// once, before the first reading.
  void start();

  /// Takes the verdict of one reading, and posts the notification when that is due.
  void observe(const ProtectionVerdict& verdict, Date now);

  /// Takes the container runtimes of one reading in which a download was blocked, and posts a notification
  /// for each enabled one that is due.
  void observeContainerBlocks(const std::vector<std::string>& blocked, const std::set<std::string>& enabled,
                              Date now);

  /// Runs when the person asks for the container trust guide; may be none.
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
