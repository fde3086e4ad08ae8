#include "OstrelAgent/Notifications/RedNotifier.hpp"

#include <utility>

#include "OstrelAgent/Notifications/ContainerBlockNotificationGate.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/RandomUuid.hpp"

namespace ostrel {

namespace {

constexpr const char* notProtectedCategory = "tech.brenn.ostrel-agent.not-protected";
constexpr const char* containerBlockedCategory = "tech.brenn.ostrel-agent.container-blocked";
constexpr const char* fixAction = "FIX";
constexpr const char* containerTrustAction = "CONTAINER_TRUST";

bool asksFor(const NotificationResponse& response, std::string_view action, std::string_view category) {
  using Case = NotificationResponse::Case;
  if (response.kind == Case::action) return response.action == action;
  return response.kind == Case::opened && response.category == category;
}

}  // namespace

RedNotifier::RedNotifier(Services services, std::function<void()> openRepairFlow)
    : services_(services),
      openRepairFlow_(std::move(openRepairFlow)),
      memory_(services.userDefaults, services.log) {}

void RedNotifier::requestAuthorizationIfNeeded(UserNotifications& notifications, Log& log,
                                               std::function<void()> answered) {
  notifications.readAuthorization(
      [&notifications, &log, answered = std::move(answered)](NotificationAuthorization authorization) {
        if (authorization != NotificationAuthorization::notDetermined) return answered();
        notifications.requestAuthorization([&log, answered](const std::expected<void, PlatformError>& asked) {
          if (!asked)
            log.line("ostrel: notification authorization request failed: " + asked.error().description);
          answered();
        });
      });
}

void RedNotifier::start() {
  auto& notifications = services_.notifications;
  notifications.onResponse([weak = weak_from_this()](const NotificationResponse& response) {
    if (const auto self = weak.lock()) self->respond(response);
  });
  notifications.registerCategories({
      {notProtectedCategory, {{fixAction, std::string(Copy::buttonFix.text())}}},
      {containerBlockedCategory, {{containerTrustAction, std::string(Copy::buttonContainerTrust.text())}}},
  });
  notifications.readAuthorization([&log = services_.log](NotificationAuthorization authorization) {
    if (authorization == NotificationAuthorization::authorized) return;
    log.line("ostrel: notifications are not authorized (status " +
             std::to_string(static_cast<int>(authorization)) +
             "); this Mac cannot be told when it stops being protected");
  });
}

void RedNotifier::observe(const ProtectionVerdict& verdict, Date now) {
  const auto lastPostedAt = memory_.notProtected();
  auto outcome =
      RedNotificationGate::evaluate(verdict, lastPostedAt, std::exchange(closedRuns_, {}), openRun_, now);
  closedRuns_ = std::move(outcome.closed);
  openRun_ = outcome.open;
  if (outcome.lastPostedAt != lastPostedAt) memory_.setNotProtected(outcome.lastPostedAt);
  if (outcome.post) postNotProtected();
}

void RedNotifier::observeContainerBlocks(const std::vector<std::string>& blocked,
                                         const std::set<std::string>& enabled, Date now) {
  if (blocked.empty()) return;
  const auto lastPostedAt = memory_.containerBlocks();
  const auto outcome = ContainerBlockNotificationGate::evaluate(blocked, enabled, lastPostedAt, now);
  if (outcome.lastPostedAt != lastPostedAt) memory_.setContainerBlocks(outcome.lastPostedAt);
  for (const auto& runtime : outcome.post) {
    postContainerBlocked(runtime, [weak = weak_from_this(), runtime, now] {
      if (const auto self = weak.lock()) self->rememberContainerBlock(runtime, now);
    });
  }
}

void RedNotifier::rememberContainerBlock(const std::string& runtime, Date now) {
  auto lastPostedAt = memory_.containerBlocks();
  const auto date = lastPostedAt.find(runtime);
  if (date != lastPostedAt.end() && date->second == now) return;
  lastPostedAt.insert_or_assign(runtime, now);
  memory_.setContainerBlocks(std::move(lastPostedAt));
}

void RedNotifier::postNotProtected() {
  services_.notifications.post(
      {.identifier = randomUuid(),
       .title = std::string(Copy::notificationNotProtectedTitle.text()),
       .body = std::string(Copy::notificationNotProtectedBody.text()),
       .category = notProtectedCategory,
       .sound = NotificationSound::standard},
      [&log = services_.log](const std::expected<void, PlatformError>& posted) {
        if (posted) return;
        log.line("ostrel: could not post the not-protected notification: " + posted.error().description);
      });
}

void RedNotifier::postContainerBlocked(const std::string& runtime, std::function<void()> accepted) {
  services_.notifications.post(
      {.identifier = randomUuid(),
       .title = Copy::notificationContainerBlockedTitle.with(runtime),
       .body = std::string(Copy::notificationContainerBlockedBody.text()),
       .category = containerBlockedCategory},
      [&log = services_.log,
       accepted = std::move(accepted)](const std::expected<void, PlatformError>& posted) {
        if (posted) return accepted();
        log.line("ostrel: could not post the container-blocked notification: " + posted.error().description);
      });
}

void RedNotifier::respond(const NotificationResponse& response) const {
  if (asksFor(response, containerTrustAction, containerBlockedCategory)) {
    if (openContainerTrust) openContainerTrust();
  } else if (asksFor(response, fixAction, notProtectedCategory)) {
    openRepairFlow_();
  }
}

}  // namespace ostrel
