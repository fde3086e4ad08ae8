#pragma once

#include "Platform/MainQueue.hpp"
#include "Platform/UserNotifications.hpp"

namespace ostrel {

/// Notifications where there is no notification centre: nobody has to be asked.
class ConsoleUserNotifications final : public UserNotifications {
 public:
  explicit ConsoleUserNotifications(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  void readAuthorization(std::function<void(NotificationAuthorization)> completion) override {
    mainQueue_.post(
        [completion = std::move(completion)] { completion(NotificationAuthorization::authorized); });
  }

  void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) override {
    mainQueue_.post([completion = std::move(completion)] { completion({}); });
  }

 private:
  MainQueue& mainQueue_;
};

}  // namespace ostrel
