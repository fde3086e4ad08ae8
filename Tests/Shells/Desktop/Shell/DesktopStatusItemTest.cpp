#include "Shells/Desktop/Shell/DesktopStatusItem.hpp"

#include <gtest/gtest.h>

#include <QDBusVariant>

#include "Tests/Fakes/FakeMenuBar.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"
#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"
#include "Tests/Shells/Desktop/Shell/SignalRecorder.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

const QString interface = QStringLiteral("org.kde.StatusNotifierItem");
constexpr MenuBarPalette lightPalette{MenuBarPalette::Case::light};

struct DesktopStatusItemTest : DesktopTest {
  QVariantMap properties() {
    const auto call = callOf(programName, StatusNotifierItem::path, "org.freedesktop.DBus.Properties",
                             "GetAll", {interface});
    return qdbus_cast<QVariantMap>(answerTo(desktop, call).arguments().value(0));
  }

  QStringList signalsSoFar() {
    properties();
    const auto names = signalsOfItem.names() + signalsOfMenu.names();
    signalsOfItem.signalsTaken.clear();
    signalsOfMenu.signalsTaken.clear();
    return names;
  }

  DesktopStatusItem makeItem(const std::string& resources) {
    return {program, resources, themeWatcher, log, [](QPoint) {}};
  }

  SignalRecorder signalsOfItem{desktop, StatusNotifierItem::path, interface};
  SignalRecorder signalsOfMenu{desktop, StatusItemMenu::path, "com.canonical.dbusmenu"};
  ThemeWatcher themeWatcher{program, [] {}};
};

TEST_F(DesktopStatusItemTest, ShowsTheIconInThreeSizesWithTheHighestByteFirst) {
  auto item = makeItem(RESOURCES);
  item.show({menubarpicture::Glyph{MenuBarBadge::octagon, lightPalette}, "Ostrel Agent: not protected"});
  const auto values = properties();
  const auto pixmaps = qdbus_cast<QList<DBusPixmap>>(values.value("IconPixmap"));
  ASSERT_EQ(pixmaps.size(), 3);
  for (int scale = 1; scale <= 3; ++scale) {
    const auto& pixmap = pixmaps[scale - 1];
    ASSERT_EQ(pixmap.width, 18 * scale);
    ASSERT_EQ(pixmap.height, 18 * scale);
    ASSERT_EQ(pixmap.bytes.size(), 4 * 18 * scale * 18 * scale);
  }
  // The badge's own colour, opaque, near its upper edge.
  const auto color = lightPalette.color(MenuBarBadge::octagon);
  const auto bytes = pixmaps[2].bytes.mid(4 * (qsizetype{37} * 54 + 43), 4);
  EXPECT_EQ(bytes, QByteArray::fromRawData("\xFF", 1) + static_cast<char>(color.red) +
                       static_cast<char>(color.green) + static_cast<char>(color.blue));
  EXPECT_EQ(values.value("Title"), "Ostrel Agent: not protected");
}

TEST_F(DesktopStatusItemTest, PutsTheEmojiIntoTheTitleWithoutAnImage) {
  const TemporaryFolder empty;
  auto item = makeItem(empty.path());
  EXPECT_FALSE(item.hasImage(lightPalette.glyphName()));
  EXPECT_FALSE(item.hasSymbol("checkmark.shield"));
  const auto sign = VerdictSymbols::of({ProtectionVerdict::Case::isProtected});
  item.show(MenuBarIcon::of({ProtectionVerdict::Case::isProtected}, lightPalette, false, false));
  const auto values = properties();
  EXPECT_EQ(values.value("Title"), QString::fromUtf8(sign.emoji.data()));
  EXPECT_EQ(values.value("IconAccessibleDesc"), "Ostrel Agent: protected");
  EXPECT_EQ(qdbus_cast<DBusToolTip>(values.value("ToolTip")).title, "Ostrel Agent: protected");
  EXPECT_EQ(qdbus_cast<QList<DBusPixmap>>(values.value("IconPixmap")).size(), 3) << "trays show no title";
  EXPECT_TRUE(makeItem(RESOURCES).hasImage(lightPalette.glyphName()));
}

TEST_F(DesktopStatusItemTest, IsSilentWhenARefreshChangesNothing) {
  FakeHost host;
  auto item = makeItem(RESOURCES);
  host.files.putExecutable(host.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
  std::string verdict = "protected";
  host.childProcesses.answer = [&](const ChildCommand& command) {
    return command.executable == "/usr/bin/profiles" ? ChildResult{0, "MDM enrollment: No\n"}
                                                     : ChildResult{0, reportText(verdict)};
  };
  const auto controller = menuBarOn(host, item);
  const auto refresh = [&] {
    host.mainQueue.advance(5s);
    host.statusQueue.runAll();
    host.backgroundQueue.runAll();
    host.mainQueue.runAll();
  };
  controller->start();
  refresh();
  signalsSoFar();
  for (int again = 0; again < 3; ++again) refresh();
  EXPECT_EQ(signalsSoFar(), QStringList());
  verdict = "not_protected";
  refresh();
  EXPECT_EQ(signalsSoFar(), QStringList({"NewIcon", "NewTitle", "NewToolTip"}));
}

}  // namespace
}  // namespace ostrel
