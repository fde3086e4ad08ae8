#pragma once

#include <optional>
#include <vector>

#include "Platform/MainQueue.hpp"
#include "Platform/UserNotifications.hpp"

namespace ostrel {

/// Notifications with the authorization that the test sets and the clicks that it makes.
class FakeUserNotifications final : public UserNotifications {
 public:
  explicit FakeUserNotifications(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  void readAuthorization(std::function<void(NotificationAuthorization)> completion) override {
    mainQueue_.post([this, completion] { completion(authorization); });
  }

  void requestAuthorization(std::function<void(std::expected<void, PlatformError>)> completion) override {
    ++requests;
    mainQueue_.post([this, completion] {
      authorization = decision.value_or(authorization);
      completion(requestResult);
    });
  }

  void registerCategories(std::vector<NotificationCategory> all) override { categories = std::move(all); }

  void onResponse(std::function<void(const NotificationResponse&)> receiver) override {
    receiver_ = std::move(receiver);
  }

  void post(const UserNotification& notification,
            std::function<void(std::expected<void, PlatformError>)> completion) override {
    posted.push_back(notification);
    mainQueue_.post([result = postResult, completion] { completion(result); });
  }

  /// The user responds to a notification.
  void respond(const NotificationResponse& response) const {
    if (receiver_) receiver_(response);
  }

  NotificationAuthorization authorization = NotificationAuthorization::notDetermined;
  std::optional<NotificationAuthorization> decision;  ///< of the user when asked
  std::expected<void, PlatformError> requestResult;
  std::expected<void, PlatformError> postResult;
  int requests = 0;
  std::vector<NotificationCategory> categories;
  std::vector<UserNotification> posted;

 private:
  MainQueue& mainQueue_;
  std::function<void(const NotificationResponse&)> receiver_;
};

}  // namespace ostrel
