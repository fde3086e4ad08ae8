#pragma once

#include "Platform/MainQueue.hpp"
#include "Platform/UserNotifications.hpp"

namespace ostrel {

/// Notifications with the authorization that the test sets.
class FakeUserNotifications final : public UserNotifications {
 public:
  explicit FakeUserNotifications(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  void readAuthorization(std::function<void(NotificationAuthorization)> completion) override {
    mainQueue_.post([this, completion] { completion(authorization); });
  }

  void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) override {
    ++requests;
    mainQueue_.post([this, completion] { completion(requestResult); });
  }

  NotificationAuthorization authorization = NotificationAuthorization::notDetermined;
  std::expected<void, PlatformError> requestResult;
  int requests = 0;

 private:
  MainQueue& mainQueue_;
};

}  // namespace ostrel
