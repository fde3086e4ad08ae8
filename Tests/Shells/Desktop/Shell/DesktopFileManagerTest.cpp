#include "Shells/Desktop/Shell/DesktopFileManager.hpp"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <memory>
#include <vector>

#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"
#include "Tests/Shells/Desktop/Shell/FileBrowser.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

using Answers = std::vector<bool>;

std::string sameOf(std::string_view path) { return std::string(path); }

struct DesktopFileManagerTest : DesktopTest {
  QString address() const { return QString::fromStdString(bus.address()); }

  static std::shared_ptr<Answers> begin(DesktopFileManager& by, const std::string& path) {
    auto answers = std::make_shared<Answers>();
    by.reveal(path, [answers](bool isShown) { answers->push_back(isShown); });
    EXPECT_TRUE(answers->empty()) << "answered inside the call";
    return answers;
  }

  static Answers awaited(const std::shared_ptr<Answers>& answers) {
    spinUntil([&] { return !answers->empty(); });
    return *answers;
  }

  Answers reveal(const std::string& path) { return awaited(begin(manager, path)); }

  DesktopFileManager manager{program, sameOf, 20s};
};

TEST_F(DesktopFileManagerTest, AsksForTheRealFileByItsUri) {
  FileBrowser browser(desktop);
  DesktopFileManager beneath(
      program, [](std::string_view path) { return "/root" + std::string(path); }, 20s);
  const std::pair<const char*, const char*> rows[] = {
      {"/etc/ca.pem", "file:///root/etc/ca.pem"},
      {"/a b/50%?#ü", "file:///root/a%20b/50%25%3F%23%C3%BC"},
      {"/not\xFFtext", "file:///root/not%FFtext"},
  };
  for (const auto& [path, uri] : rows) {
    browser.asked.clear();
    EXPECT_EQ(awaited(begin(beneath, path)), Answers{true});
    EXPECT_EQ(browser.asked, QList<QStringList>{{uri}});
  }
}

TEST_F(DesktopFileManagerTest, AnswersThatNoneHasShownTheFile) {
  EXPECT_EQ(reveal("/a"), Answers{false}) << "there is none";
  FileBrowser browser(desktop);
  EXPECT_EQ(reveal("/a"), Answers{true}) << "one that has appeared";
  browser.answer = FileBrowser::Answer::refusal;
  EXPECT_EQ(reveal("/a"), Answers{false});
  const SessionBus starting("org.freedesktop.FileManager1");
  DesktopBus other(QString::fromStdString(starting.address()), log);
  DesktopFileManager ofOther(other, sameOf, 20s);
  EXPECT_EQ(awaited(begin(ofOther, "/a")), Answers{false}) << "it does not start";
  bus.kill();
  EXPECT_EQ(reveal("/a"), Answers{false}) << "the bus has ended";
}

TEST_F(DesktopFileManagerTest, GivesUpOnOneThatIsSilentAndIgnoresItsLateAnswer) {
  FileBrowser browser(desktop);
  browser.answer = FileBrowser::Answer::none;
  DesktopFileManager hasty(program, sameOf);
  QElapsedTimer timer;
  timer.start();
  const auto answers = begin(hasty, "/a");
  EXPECT_EQ(awaited(answers), Answers{false});
  EXPECT_GT(timer.elapsed(), 900);
  EXPECT_EQ(browser.asked.size(), 1);
  browser.answerLate();
  answerTo(desktop, busCall("GetId"));
  answerTo(program.connection(), busCall("GetId"));
  EXPECT_EQ(*answers, Answers{false});
}

TEST_F(DesktopFileManagerTest, WaitsForTheBusUntilItIsKnownToBeMissing) {
  const FileBrowser browser(desktop);
  bus.pause();
  DesktopBus late(address(), log);
  DesktopFileManager patient(late, sameOf, 20s);
  DesktopFileManager hasty(late, sameOf, 10ms);
  const auto answers = begin(patient, "/a");
  EXPECT_EQ(awaited(begin(hasty, "/b")), Answers{false});
  bus.resume();
  EXPECT_EQ(awaited(answers), Answers{true});
  answerTo(late.connection(), busCall("GetId"));
  EXPECT_EQ(browser.asked, QList<QStringList>{{"file:///a"}}) << "asked after it was given up";
  bus.pause();
  EXPECT_EQ(awaited(begin(hasty, "/c")), Answers{false}) << "a bus that has fallen silent";
  bus.resume();
  DesktopBus none("unix:path=/nowhere", log);
  DesktopFileManager ofNone(none, sameOf, 20s);
  EXPECT_EQ(awaited(begin(ofNone, "/a")), Answers{false});
}

TEST_F(DesktopFileManagerTest, AnswersNothingAfterItsEnd) {
  FileBrowser browser(desktop);
  auto brief = std::make_unique<DesktopFileManager>(program, sameOf, 20s);
  const auto answers = begin(*brief, "/a");
  brief.reset();
  ASSERT_TRUE(spinUntil([&] { return !browser.asked.empty(); }));
  answerTo(program.connection(), busCall("GetId"));
  EXPECT_EQ(*answers, Answers());
}

}  // namespace
}  // namespace ostrel
