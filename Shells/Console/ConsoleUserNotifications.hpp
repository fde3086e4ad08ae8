#pragma once

#include <utility>

#include "Platform/MainQueue.hpp"
#include "Platform/StandardStreams.hpp"
#include "Platform/UserNotifications.hpp"
#include "Shells/Console/PrintableText.hpp"

namespace ostrel {

/// Notifications where there is no notification centre: lines of standard output. They need no permission and
/// cannot be clicked.
class ConsoleUserNotifications final : public UserNotifications {
 public:
  ConsoleUserNotifications(MainQueue& mainQueue, StandardStreams& streams)
      : mainQueue_(mainQueue), streams_(streams) {}

  void readAuthorization(std::function<void(NotificationAuthorization)> completion) override {
    mainQueue_.post(
        [completion = std::move(completion)] { completion(NotificationAuthorization::authorized); });
  }

  void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) override {
    mainQueue_.post([completion = std::move(completion)] { completion({}); });
  }

  void registerCategories(std::vector<NotificationCategory>) override {}

  void onResponse(std::function<void(const NotificationResponse&)>) override {}

  void post(const UserNotification& notification,
            std::function<void(std::expected<void, PlatformError>)> completion) override {
    streams_.writeOutput(printableText(notification.title + ": " + notification.body) + "\n");
    mainQueue_.post([completion = std::move(completion)] { completion({}); });
  }

 private:
  MainQueue& mainQueue_;
  StandardStreams& streams_;
};

}  // namespace ostrel
