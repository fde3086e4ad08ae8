#include "Shells/Desktop/Shell/DesktopNotifications.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"
#include "Tests/Shells/Desktop/Shell/NotificationDaemon.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

using Posted = std::optional<std::expected<void, PlatformError>>;
using Answer = NotificationDaemon::Answer;
using Response = NotificationResponse;

/// "opened", "dismissed" or the action, with the notification's kind.
std::string textOf(const Response& response) {
  switch (response.kind) {
    case Response::Case::opened:
      return "opened " + response.category;
    case Response::Case::dismissed:
      return "dismissed " + response.category;
    case Response::Case::action:
      return response.action + " " + response.category;
  }
  return {};
}

struct DesktopNotificationsTest : DesktopTest {
  DesktopNotificationsTest() { prepare(notifications); }

  void prepare(DesktopNotifications& of) {
    of.registerCategories({{"alarm", {{"FIX", "Fix…"}, {"LATER", "Later"}}}, {"news", {}}});
    of.onResponse([this](const Response& response) { responses.push_back(textOf(response)); });
  }

  static UserNotification alarm(const std::string& identifier) {
    return {.identifier = identifier,
            .title = "A <b> & c",
            .body = "x < \"y\" & z",
            .category = "alarm",
            .sound = NotificationSound::standard};
  }

  std::shared_ptr<Posted> begin(DesktopNotifications& by, const UserNotification& notification) {
    const auto posted = std::make_shared<Posted>();
    by.post(notification, [posted](const auto& result) {
      EXPECT_FALSE(*posted) << "answered twice";
      *posted = result;
    });
    EXPECT_FALSE(*posted) << "answered inside the call";
    return posted;
  }

  /// Nothing when it was accepted, else domain and description of the error.
  std::string post(const UserNotification& notification) {
    return resultOf(begin(notifications, notification));
  }

  static std::string resultOf(const std::shared_ptr<Posted>& posted) {
    spinUntil([&] { return posted->has_value(); });
    const auto& result = *posted;
    if (!result) return "no answer";
    return *result ? "" : result->error().domain + ": " + result->error().description;
  }

  int readAuthorization(DesktopNotifications& of) {
    std::optional<NotificationAuthorization> read;
    of.readAuthorization([&](NotificationAuthorization authorization) { read = authorization; });
    EXPECT_FALSE(read) << "answered inside the call";
    spinUntil([&] { return read.has_value(); });
    return read ? static_cast<int>(*read) : -1;
  }

  /// What others have sent before has come when a call after it is answered.
  void settle(const QDBusConnection& other) {
    answerTo(other, busCall("GetId"));
    answerTo(program.connection(), busCall("GetId"));
  }

  std::vector<std::string> responses;
  DesktopNotifications notifications{program};
};

TEST_F(DesktopNotificationsTest, SendsTheDaemonWhatItIsToShow) {
  NotificationDaemon daemon(desktop);
  struct Row {
    QStringList capabilities;
    QString body;
    int actions;
  };
  const Row rows[] = {
      {{"body", "actions", "body-markup"}, "x &lt; &quot;y&quot; &amp; z", 6},
      {{"actions", "body-hyperlinks"}, "x < \"y\" & z", 6},
      {{}, "x < \"y\" & z", 0},
  };
  for (const auto& [capabilities, body, actions] : rows) {
    daemon.capabilities = capabilities;
    EXPECT_EQ(post(alarm("same")), "");
    const auto& notified = daemon.notified.last();
    EXPECT_EQ(notified.application, QGuiApplication::applicationDisplayName());
    EXPECT_EQ(notified.title, "A <b> & c");
    EXPECT_EQ(notified.body, body);
    EXPECT_EQ(notified.actions.size(), actions);
  }
  const auto& first = daemon.notified.first();
  EXPECT_EQ(first.actions, QStringList({"default", "", "FIX", "Fix…", "LATER", "Later"}));
  EXPECT_EQ(first.hints.value("sound-name"), "message-new-instant");
  EXPECT_EQ(first.hints.value("urgency"), QVariant::fromValue(uchar(1)));
  EXPECT_EQ(first.hints.value("category"), "x-alarm");
  daemon.capabilities = {"actions"};
  EXPECT_EQ(post({.identifier = "other", .title = "t", .body = "", .category = "unknown"}), "");
  EXPECT_EQ(daemon.notified.last().actions.size(), 2) << "a click on the body alone";
  EXPECT_EQ(daemon.notified.last().hints.value("suppress-sound"), true);
  EXPECT_FALSE(daemon.notified.last().hints.contains("sound-name"));
}

TEST_F(DesktopNotificationsTest, ReportsWhatTheUserDoesWithItsNotifications) {
  NotificationDaemon daemon(desktop);
  for (const char* identifier : {"1", "2", "3", "4", "5", "6", "7"}) EXPECT_EQ(post(alarm(identifier)), "");
  daemon.press(1, "default");
  daemon.press(2, "FIX");
  daemon.close(2, 2);  // as daemons do after a press
  daemon.close(3, 2);
  for (const auto& [number, reason] : {std::pair{4U, 1U}, {5U, 3U}, {6U, 4U}}) daemon.close(number, reason);
  daemon.press(1, "default");
  daemon.press(4, "FIX");
  daemon.press(77, "FIX");
  daemon.close(77, 2);
  daemon.press(7, "LATER");
  ASSERT_TRUE(spinUntil([&] { return responses.size() >= 4; }));
  settle(desktop);
  EXPECT_EQ(responses,
            (std::vector<std::string>{"opened alarm", "FIX alarm", "dismissed alarm", "LATER alarm"}));
  EXPECT_EQ(daemon.closings, (QList<uint>{1, 2, 7})) << "what was answered is taken away";
}

TEST_F(DesktopNotificationsTest, TakesClicksFromTheDaemonThatShowsTheNotificationAlone) {
  auto daemon = std::make_unique<NotificationDaemon>(desktop);
  EXPECT_EQ(post(alarm("same")), "");
  auto stranger = bus.connect();
  auto signal =
      QDBusMessage::createTargetedSignal(program.connection().baseService(), "/org/freedesktop/Notifications",
                                         "org.freedesktop.Notifications", "ActionInvoked");
  stranger.send(signal << 1U << "FIX");
  settle(stranger);
  daemon.reset();
  NotificationDaemon next(stranger);
  next.press(1, "FIX");
  settle(stranger);
  EXPECT_EQ(responses.size(), 0U);
  EXPECT_EQ(post(alarm("same")), "");
  EXPECT_EQ(next.notified.last().replaced, 0U) << "that number is another's now";
  next.press(1, "FIX");
  EXPECT_TRUE(spinUntil([&] { return responses.size() == 1; }));
}

TEST_F(DesktopNotificationsTest, ReplacesTheNotificationOfThatIdentifierWhileItShows) {
  NotificationDaemon daemon(desktop);
  for (const char* identifier : {"a", "b", "a"}) EXPECT_EQ(post(alarm(identifier)), "");
  EXPECT_EQ(daemon.notified.last().replaced, 1U);
  EXPECT_EQ(daemon.closings, QList<uint>());
  daemon.canReplace = false;
  EXPECT_EQ(post(alarm("a")), "");
  settle(desktop);
  EXPECT_EQ(daemon.closings, QList<uint>{1}) << "a daemon shows it beside the first";
  daemon.close(3, 1);
  settle(desktop);
  EXPECT_EQ(post(alarm("a")), "");
  EXPECT_EQ(daemon.notified.last().replaced, 0U) << "it has expired";
  daemon.press(2, "FIX");
  EXPECT_TRUE(spinUntil([&] { return responses.size() == 1; }));
}

TEST_F(DesktopNotificationsTest, ReportsWhyADaemonHasNotAcceptedIt) {
  EXPECT_EQ(post(alarm("a")), "org.freedesktop.DBus.Error.ServiceUnknown: there is no notification daemon");
  NotificationDaemon daemon(desktop);
  EXPECT_EQ(post(alarm("a")), "") << "one that has appeared";
  daemon.answerOfNotify = Answer::refusal;
  EXPECT_EQ(post(alarm("b")), "org.example.Error.Full: no room");
  daemon.answerOfNotify = Answer::nonsense;
  EXPECT_EQ(post(alarm("c")),
            "org.freedesktop.DBus.Error.InvalidSignature: the notification daemon answers something else");
  daemon.answerOfCapabilities = Answer::refusal;
  EXPECT_EQ(post(alarm("d")), "org.example.Error.Full: no room");
  EXPECT_EQ(daemon.notified.size(), 3);
}

TEST_F(DesktopNotificationsTest, GivesUpOnADaemonThatIsSilentAndStillTakesItsLateClicks) {
  constexpr const char* silence =
      "org.freedesktop.DBus.Error.NoReply: the notification daemon does not answer";
  NotificationDaemon daemon(desktop);
  DesktopNotifications hasty(program, 200ms);
  prepare(hasty);
  daemon.answerOfCapabilities = Answer::none;
  EXPECT_EQ(resultOf(begin(hasty, alarm("a"))), silence);
  daemon.answerLate();
  settle(desktop);
  EXPECT_EQ(daemon.notified.size(), 0) << "shown after it was given up";
  daemon.answerOfCapabilities = Answer::asAsked;
  daemon.answerOfNotify = Answer::none;
  EXPECT_EQ(resultOf(begin(hasty, alarm("b"))), silence);
  daemon.answerLate();
  daemon.press(2, "FIX");
  EXPECT_TRUE(spinUntil([&] { return responses == std::vector<std::string>{"FIX alarm"}; }));
}

TEST_F(DesktopNotificationsTest, CountsAsAuthorizedWhereADaemonRunsOrCanBeStarted) {
  EXPECT_EQ(readAuthorization(notifications), 1);
  {
    const NotificationDaemon daemon(desktop);
    EXPECT_EQ(readAuthorization(notifications), 2);
  }
  EXPECT_EQ(readAuthorization(notifications), 1);
  const SessionBus starting("org.freedesktop.Notifications");
  DesktopBus other(QString::fromStdString(starting.address()), log);
  DesktopNotifications ofOther(other);
  EXPECT_EQ(readAuthorization(ofOther), 2);
  EXPECT_NE(resultOf(begin(ofOther, alarm("a"))), "") << "it does not start after all";
  bool isAsked = false;
  notifications.requestAuthorization([&](const auto& asked) { isAsked = asked.has_value(); });
  EXPECT_FALSE(isAsked);
  EXPECT_TRUE(spinUntil([&] { return isAsked; }));
}

TEST_F(DesktopNotificationsTest, WaitsForTheBusUntilItIsKnownToBeMissing) {
  constexpr const char* missing = "org.freedesktop.DBus.Error.NoServer: the session bus cannot be reached";
  const NotificationDaemon daemon(desktop);
  bus.pause();
  DesktopBus late(QString::fromStdString(bus.address()), log);
  DesktopNotifications patient(late);
  const auto posted = begin(patient, alarm("a"));
  bus.resume();
  EXPECT_EQ(resultOf(posted), "");
  bus.pause();
  DesktopBus silent(QString::fromStdString(bus.address()), log);
  DesktopNotifications ofSilent(silent);
  EXPECT_EQ(resultOf(begin(ofSilent, alarm("b"))), missing);
  EXPECT_EQ(readAuthorization(ofSilent), 1);
  bus.resume();
  EXPECT_TRUE(spinUntil([&] { return silent.isJoined(); }));
  EXPECT_EQ(readAuthorization(ofSilent), 2);
  EXPECT_EQ(daemon.notified.size(), 1) << "shown after it has failed";
  DesktopBus none("unix:path=/nowhere", log);
  DesktopNotifications ofNone(none);
  EXPECT_EQ(readAuthorization(ofNone), 1);
  EXPECT_EQ(resultOf(begin(ofNone, alarm("c"))), missing);
}

TEST_F(DesktopNotificationsTest, TakesAwayWhatStillShowsAtItsEnd) {
  NotificationDaemon daemon(desktop);
  auto line = std::make_unique<DesktopBus>(QString::fromStdString(bus.address()), log);
  auto brief = std::make_unique<DesktopNotifications>(*line);
  prepare(*brief);
  for (const char* identifier : {"1", "2", "3", "4"})
    ASSERT_EQ(resultOf(begin(*brief, alarm(identifier))), "");
  daemon.press(1, "FIX");
  daemon.close(2, 2);
  ASSERT_TRUE(spinUntil([&] { return responses.size() == 2; }));
  brief.reset();
  line.reset();
  EXPECT_TRUE(spinUntil([&] { return daemon.closings.size() >= 3; }));
  settle(desktop);
  EXPECT_EQ(daemon.closings, (QList<uint>{1, 3, 4}));
}

TEST_F(DesktopNotificationsTest, TakesNothingAwayFromADaemonThatWasStartedSince) {
  auto daemon = std::make_unique<NotificationDaemon>(desktop);
  auto brief = std::make_unique<DesktopNotifications>(program);
  ASSERT_EQ(resultOf(begin(*brief, alarm("a"))), "");
  daemon.reset();
  auto stranger = bus.connect();
  const NotificationDaemon next(stranger);
  brief.reset();
  answerTo(program.connection(), busCall("GetId"));
  answerTo(stranger, busCall("GetId"));
  EXPECT_EQ(next.closings, QList<uint>());
}

TEST_F(DesktopNotificationsTest, CallsNoCompletionAfterItsEnd) {
  NotificationDaemon daemon(desktop);
  auto brief = std::make_unique<DesktopNotifications>(program);
  prepare(*brief);
  ASSERT_EQ(resultOf(begin(*brief, alarm("a"))), "");
  const auto posted = begin(*brief, alarm("b"));
  brief.reset();
  daemon.press(1, "FIX");
  settle(desktop);
  EXPECT_FALSE(*posted);
  EXPECT_EQ(responses.size(), 0U);
}

}  // namespace
}  // namespace ostrel
