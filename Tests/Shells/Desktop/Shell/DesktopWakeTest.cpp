#include "Shells/Desktop/Shell/DesktopWake.hpp"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <memory>
#include <vector>

#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"

namespace ostrel {
namespace {

struct DesktopWakeTest : DesktopTest {
  QString address() const { return QString::fromStdString(systemBus.address()); }

  /// Sends signals until one is received, since it cannot be seen when the program listens.
  bool isHeard() {
    const bool heard = spinUntil([&] { return sendPrepareForSleep(manager, false), wakes > 0; });
    // Those on their way come before many answers.
    for (int round = 0; round < 20; ++round) answerTo(manager, busCall("GetId"));
    return heard;
  }

  void sendPrepareForSleep(const QDBusConnection& by, bool isGoing) {
    auto signal = QDBusMessage::createSignal("/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                             "PrepareForSleep");
    by.send(signal << isGoing);
    answerTo(by, busCall("GetId"));
  }

  SessionBus systemBus;
  QDBusConnection manager = systemBus.connect();
  int wakes = 0;
};

TEST_F(DesktopWakeTest, NotifiesItsObserversOfEachReturnFromSleep) {
  manager.registerService("org.freedesktop.login1");
  DesktopWake wake(program, address());
  int others = 0;
  auto token = wake.observe([&] { ++wakes; });
  const auto other = wake.observe([&] { ++others; });
  auto stranger = systemBus.connect();
  ASSERT_TRUE(isHeard());
  wakes = others = 0;
  sendPrepareForSleep(stranger, false);
  sendPrepareForSleep(manager, true);
  sendPrepareForSleep(manager, true);
  EXPECT_EQ(wakes, 0);
  sendPrepareForSleep(manager, false);
  EXPECT_TRUE(spinUntil([&] { return others == 1; }));
  EXPECT_EQ(wakes, 1);
  token.reset();
  sendPrepareForSleep(manager, false);
  EXPECT_TRUE(spinUntil([&] { return others == 2; }));
  EXPECT_EQ(wakes, 1);
}

TEST_F(DesktopWakeTest, LogsNothingWithoutTheSystemBus) {
  systemBus.pause();
  QElapsedTimer timer;
  timer.start();
  std::vector<std::unique_ptr<DesktopWake>> all;
  std::vector<ScheduledWork> tokens;
  for (const auto& place : {QStringLiteral("unix:path=/nowhere"), QStringLiteral("nonsense"), address()}) {
    all.push_back(std::make_unique<DesktopWake>(program, place));
    tokens.push_back(all.back()->observe([&] { ++wakes; }));
  }
  EXPECT_LT(timer.elapsed(), 500);
  EXPECT_TRUE(spinUntil([&] { return timer.elapsed() > 1200; })) << "by then a silent bus counts as missing";
  EXPECT_EQ(wakes, 0);
  EXPECT_EQ(log.lines, std::vector<std::string>());
  systemBus.resume();
}

TEST_F(DesktopWakeTest, FollowsWithoutASessionBusToo) {
  manager.registerService("org.freedesktop.login1");
  DesktopBus none("unix:path=/nowhere", log);
  DesktopWake wake(none, address());
  const auto token = wake.observe([&] { ++wakes; });
  EXPECT_TRUE(isHeard());
}

}  // namespace
}  // namespace ostrel
