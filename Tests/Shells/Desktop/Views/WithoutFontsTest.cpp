#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QProcess>

#include "Shells/Desktop/Views/Panel/PanelWindow.hpp"
#include "Tests/Fakes/FakeLog.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

/// Set in the run that has no fonts.
constexpr auto mark = "OSTREL_TESTS_WITHOUT_FONTS";

/// Runs this program's test of that name where no font is installed; gives the exit status.
int runWithoutFonts(const char* test) {
  const TemporaryFolder folder;
  const auto fonts = folder.write("fonts.conf", "<fontconfig></fontconfig>");
  QProcess process;
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert("FONTCONFIG_FILE", QString::fromStdString(fonts));
  environment.insert(mark, "1");
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::ForwardedChannels);
  process.start(QCoreApplication::applicationFilePath(), {QString("--gtest_filter=") + test});
  return process.waitForFinished(60000) ? process.exitCode() : -1;
}

TEST(WithoutFonts, ThePanelOpensAndSaysSoOnce) {
  if (!qEnvironmentVariableIsSet(mark)) {
    EXPECT_EQ(runWithoutFonts("WithoutFonts.ThePanelOpensAndSaysSoOnce"), 0);
    return;
  }
  FakeLog log;
  PanelContent content;
  content.header.word = "Protected";
  for (int i = 0; i < 2; ++i) {
    auto panel = PanelWindow::make(log, {});
    ASSERT_TRUE(panel) << panel.error();
    (*panel)->open(content, {}, {});
    EXPECT_TRUE((*panel)->isShown());
  }
  EXPECT_EQ(log.lines, std::vector<std::string>{"ostrel: No font is installed; texts cannot be drawn."});
}

}  // namespace
}  // namespace ostrel
