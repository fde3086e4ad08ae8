#include "OstrelAgent/Notifications/RedNotifier.hpp"

#include <gtest/gtest.h>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using Case = ProtectionVerdict::Case;
using Dates = std::map<std::string, Date>;

constexpr const char* postedAtKey = "RedNotificationLastPostedAt";
constexpr const char* blocksKey = "ContainerBlockNotificationLastPostedAt";
constexpr const char* notProtected = "tech.brenn.ostrel-agent.not-protected";
constexpr const char* containerBlocked = "tech.brenn.ostrel-agent.container-blocked";

struct RedNotifierTest : testing::Test {
  std::shared_ptr<RedNotifier> makeNotifier() {
    return std::make_shared<RedNotifier>(
        RedNotifier::Services{host.userNotifications, host.userDefaults, host.log}, [this] { ++fixes; });
  }

  /// Observes that verdict every five seconds, from now until the end inclusive.
  void observe(Case verdict, std::chrono::milliseconds duration) {
    for (const Date end = host.clock.now() + duration; host.clock.now() <= end; host.mainQueue.advance(5s)) {
      notifier->observe({verdict}, host.clock.now());
    }
    host.mainQueue.runAll();
  }

  std::size_t posts() const { return host.userNotifications.posted.size(); }

  FakeHost host;
  int fixes = 0;
  std::shared_ptr<RedNotifier> notifier = makeNotifier();
};

TEST_F(RedNotifierTest, PostsWithSoundAndAFixAndRemembersItOverARestart) {
  notifier->start();
  observe(Case::notProtected, 1min);
  ASSERT_EQ(posts(), 1U);
  const auto posted = host.userNotifications.posted[0];
  EXPECT_EQ(posted.identifier.size(), 36U);
  EXPECT_EQ(posted.identifier[14], '4') << "a random UUID";
  EXPECT_EQ(posted.title, "This Mac is not protected");
  EXPECT_TRUE(posted.body.ends_with("Fix it to restore protection."));
  EXPECT_EQ(posted.sound, NotificationSound::standard);
  const auto category = host.userNotifications.categories.at(0);
  EXPECT_EQ(posted.category, category.identifier);
  EXPECT_EQ(category.actions, (std::vector<NotificationAction>{{"FIX", "Fix…"}}));
  notifier = makeNotifier();
  observe(Case::notProtected, 10min);
  EXPECT_EQ(posts(), 1U);
  host.clock.set(host.clock.now() + 24h);
  observe(Case::notProtected, 1min);
  ASSERT_EQ(posts(), 2U);
  EXPECT_NE(host.userNotifications.posted[1].identifier, posted.identifier);
  observe(Case::isProtected, 1h);
  EXPECT_EQ(host.userDefaults.value(postedAtKey), std::nullopt);
  observe(Case::notProtected, 1min);
  EXPECT_EQ(posts(), 3U);
}

TEST_F(RedNotifierTest, PostsOnceThoughNothingCanBeStored) {
  host.userDefaults.writeError = PlatformError{posixErrorDomain, ENOSPC, "No space left on device"};
  observe(Case::notProtected, 5min);
  EXPECT_EQ(posts(), 1U);
  EXPECT_EQ(host.log.lines, std::vector<std::string>{"ostrel: could not store RedNotificationLastPostedAt: "
                                                     "No space left on device"});
  observe(Case::isProtected, 1h);
  host.userDefaults.writeError.reset();
  observe(Case::notProtected, 1min);
  EXPECT_EQ(posts(), 2U);
  EXPECT_TRUE(host.userDefaults.get<Date>(postedAtKey));
}

TEST_F(RedNotifierTest, AFailedPostIsLoggedAndNotRepeated) {
  host.userNotifications.postResult = std::unexpected(PlatformError{"UNErrorDomain", 1, "not allowed"});
  observe(Case::notProtected, 5min);
  notifier->observeContainerBlocks({"Lima"}, {"Lima"}, host.clock.now());
  notifier->observeContainerBlocks({"Lima"}, {"Lima"}, host.clock.now() + 5s);
  host.mainQueue.runAll();
  EXPECT_EQ(host.log.lines, (std::vector<std::string>{
                                "ostrel: could not post the not-protected notification: not allowed",
                                "ostrel: could not post the container-blocked notification: not allowed"}));
}

TEST_F(RedNotifierTest, MissingAuthorizationIsLoggedAtTheStart) {
  for (const auto authorization :
       {NotificationAuthorization::authorized, NotificationAuthorization::denied}) {
    host.userNotifications.authorization = authorization;
    notifier->start();
    host.mainQueue.runAll();
  }
  EXPECT_EQ(host.log.lines, std::vector<std::string>{
                                "ostrel: notifications are not authorized (status 1); this Mac cannot be "
                                "told when it stops being protected"});
  EXPECT_EQ(host.userNotifications.requests, 0) << "asking is for the onboarding window";
}

TEST_F(RedNotifierTest, ARequestForAuthorizationIsAnsweredInEveryCase) {
  using enum NotificationAuthorization;
  int answers = 0;
  const auto request = [&](NotificationAuthorization authorization) {
    host.userNotifications.authorization = authorization;
    RedNotifier::requestAuthorizationIfNeeded(host.userNotifications, host.log, [&] { ++answers; });
    host.mainQueue.runAll();
    return answers;
  };
  EXPECT_EQ(request(denied), 1);
  EXPECT_EQ(host.userNotifications.requests, 0);
  EXPECT_EQ(request(notDetermined), 2);
  host.userNotifications.requestResult = std::unexpected(PlatformError{"UNErrorDomain", 1, "not allowed"});
  EXPECT_EQ(request(notDetermined), 3);
  EXPECT_EQ(host.userNotifications.requests, 2);
}

TEST_F(RedNotifierTest, ABlockedContainerIsReportedOncePerRuntimeAndDay) {
  const Date now = host.clock.now();
  ASSERT_TRUE(host.userDefaults.set(blocksKey, Dates{{"Colima", now}}));
  for (const auto later : {0h, 1h, 24h}) {
    notifier->observeContainerBlocks({"Podman", "Docker", "Colima", "Lima"}, {"Lima", "Podman", "Colima"},
                                     now + later);
  }
  std::vector<std::string> titles;
  for (const auto& posted : host.userNotifications.posted) titles.push_back(posted.title);
  EXPECT_EQ(titles, (std::vector<std::string>{
                        "A container in Podman was blocked", "A container in Lima was blocked",
                        "A container in Podman was blocked", "A container in Colima was blocked",
                        "A container in Lima was blocked"}));
  EXPECT_EQ(host.userNotifications.posted[0].category, containerBlocked);
  EXPECT_EQ(host.userNotifications.posted[0].sound, NotificationSound::none);
  EXPECT_EQ(host.userDefaults.get<Dates>(blocksKey),
            (Dates{{"Podman", now + 24h}, {"Colima", now + 24h}, {"Lima", now + 24h}}));
}

TEST_F(RedNotifierTest, AClickOpensTheTargetOfTheNotification) {
  using Answer = NotificationResponse::Case;
  struct Row {
    NotificationResponse response;
    int fixes;
    int guides;
  };
  const Row rows[] = {
      {{Answer::opened, notProtected}, 1, 0},
      {{Answer::action, notProtected, "FIX"}, 1, 0},
      {{Answer::dismissed, notProtected}, 0, 0},
      {{Answer::action, notProtected, "OTHER"}, 0, 0},
      {{Answer::opened, containerBlocked}, 0, 1},
      {{Answer::action, containerBlocked, "CONTAINER_TRUST"}, 0, 1},
      {{Answer::dismissed, containerBlocked}, 0, 0},
      {{Answer::opened, "another"}, 0, 0},
  };
  notifier->start();
  host.userNotifications.respond({Answer::opened, containerBlocked});  // no callback is set yet
  int guides = 0;
  notifier->openContainerTrust = [&guides] { ++guides; };
  for (const auto& row : rows) {
    fixes = guides = 0;
    host.userNotifications.respond(row.response);
    EXPECT_EQ(fixes, row.fixes) << row.response.category << row.response.action;
    EXPECT_EQ(guides, row.guides) << row.response.category << row.response.action;
  }
  notifier.reset();
  fixes = 0;
  host.userNotifications.respond({Answer::opened, notProtected});
  EXPECT_EQ(fixes, 0) << "of a destroyed notifier";
}

}  // namespace
}  // namespace ostrel
