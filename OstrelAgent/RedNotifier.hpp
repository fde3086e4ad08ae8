#pragma once

#include "Platform/Log.hpp"
#include "Platform/UserNotifications.hpp"

namespace ostrel {

/// Tells the person when this Mac is not protected. Main thread; the services outlive it and its answers.
class RedNotifier {
 public:
  /// Asks the person for alerts with sound, unless that was decided before. A question that cannot be asked
  /// is told in the log.
  static void requestAuthorizationIfNeeded(UserNotifications& notifications, Log& log);
};

}  // namespace ostrel
