#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "Shells/Desktop/Shell/DesktopStatusItem.hpp"
#include "Shells/Desktop/Shell/EmbeddedIcon.hpp"
#include "Tests/Shells/Desktop/Shell/DesktopTest.hpp"
#include "Tests/Shells/Desktop/Shell/EmbeddingTrayPeer.hpp"
#include "Tests/Shells/Desktop/Shell/TrayWatcher.hpp"

namespace ostrel {
namespace {

constexpr QRgb small = qRgb(255, 0, 0);
constexpr QRgb large = qRgb(0, 0, 255);

/// Of that colour on the left, with nothing on the right.
QImage halfFilled(int side, QRgb color) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side / 2; ++x) image.setPixel(x, y, color);
  }
  return image;
}

struct XEmbedIconTest : DesktopTest {
  bool docks(EmbeddingTrayPeer& tray, int width = 22, int height = 22) {
    return spinUntil([&] { return tray.hasEmbedded(width, height); });
  }

  bool goes(xcb_window_t window) {
    return spinUntil([&] { return !display.hasWindow(window); });
  }

  void show() {
    icon->show(
        [] {
          return std::vector{halfFilled(18, small), halfFilled(54, large)};
        },
        "Ostrel Agent: protected ✓");
  }

  DisplayPeer display;
  std::vector<QPoint> clicks;
  int changes = 0;
  std::unique_ptr<EmbeddedIcon> icon =
      makeEmbeddedIcon({.clicked = [this](QPoint place) { clicks.push_back(place); },
                        .appearanceChanged = [this] { ++changes; }});
};

TEST_F(XEmbedIconTest, DrawsTheSizeThatSuitsOverTheTraysBackground) {
  EmbeddingTrayPeer tray;
  show();
  icon->setWanted(true);
  ASSERT_TRUE(docks(tray));
  EXPECT_EQ(display.property(tray.icon(), "_NET_WM_NAME"), "Ostrel Agent: protected ✓");
  EXPECT_EQ(display.property(tray.icon(), "_XEMBED_INFO"), std::string("\0\0\0\0\1\0\0\0", 8));
  tray.resizeIcon(1, 1);
  struct Row {
    int width, height;
    QRgb color;
    int side;
  };
  for (const auto& [width, height, color, side] :
       {Row{18, 18, small, 18}, Row{60, 40, large, 40}, Row{16, 44, small, 16}, Row{200, 70, large, 70},
        Row{590, 390, large, 128}}) {
    SCOPED_TRACE(testing::Message() << width << 'x' << height);
    tray.resizeIcon(width, height);
    const int left = (width - side) / 2 + side / 4;
    const int right = left + side / 2;
    QImage picture;
    EXPECT_TRUE(spinUntil([&] {
      picture = tray.picture(width, height);
      return !picture.isNull() && picture.pixel(left, height / 2) == color;
    }));
    EXPECT_EQ(picture.pixel(right, height / 2), EmbeddingTrayPeer::background);
    EXPECT_EQ(picture.pixel(width - 1, height - 1), EmbeddingTrayPeer::background);
  }
}

TEST_F(XEmbedIconTest, IsTransparentWhereTheTrayAsksForIt) {
  EmbeddingTrayPeer tray(true);
  show();
  icon->setWanted(true);
  ASSERT_TRUE(docks(tray));
  EXPECT_EQ(display.depthOf(tray.icon()), 32);
  EXPECT_TRUE(spinUntil([&] {
    const auto picture = tray.picture(22, 22);
    return !picture.isNull() && picture.pixel(5, 11) == large && qAlpha(picture.pixel(18, 11)) == 0;
  }));
}

TEST_F(XEmbedIconTest, TellsHowLightTheTrayIsBehindIt) {
  EXPECT_EQ(icon->appearance(), std::nullopt);
  EmbeddingTrayPeer tray;
  show();
  icon->setWanted(true);
  ASSERT_TRUE(docks(tray));
  EXPECT_TRUE(spinUntil([&] { return icon->appearance() == Appearance::dark; }));
  tray.setBackground(EmbeddingTrayPeer::lightBackground);
  EXPECT_TRUE(spinUntil([&] { return icon->appearance() == Appearance::light; }));
  icon->setWanted(false);
  EXPECT_EQ(icon->appearance(), std::nullopt);
  EXPECT_TRUE(spinUntil([&] { return changes == 3; }));
}

TEST_F(XEmbedIconTest, FollowsTraysThatComeAndGo) {
  show();
  icon->setWanted(true);
  xcb_window_t window = XCB_NONE;
  for (const bool isLeftOnScreen : {true, false}) {
    std::optional<EmbeddingTrayPeer> tray(std::in_place);
    ASSERT_TRUE(docks(*tray));
    window = tray->icon();
    if (isLeftOnScreen) tray->saveIcon();
    tray.reset();
    EXPECT_TRUE(goes(window));
  }
  EmbeddingTrayPeer first;
  ASSERT_TRUE(docks(first));
  EmbeddingTrayPeer second;
  ASSERT_TRUE(docks(second));
  EXPECT_TRUE(goes(first.icon()));
  EXPECT_TRUE(display.hasWindow(second.icon()));
  icon->setWanted(false);
  EXPECT_TRUE(goes(second.icon()));
}

TEST_F(XEmbedIconTest, TellsOfAClickAtTheIconsEdgeTowardsTheMiddle) {
  EmbeddingTrayPeer tray;
  show();
  icon->setWanted(true);
  ASSERT_TRUE(docks(tray));
  tray.release(4, {5, 5}, {1, 1});
  tray.release(1, {22, 5}, {2, 2});
  tray.release(1, {5, -1}, {3, 3});
  tray.release(1, {21, 0}, {1234, 17});
  tray.release(3, {0, 21}, {1235, 700});
  EXPECT_TRUE(spinUntil([&] { return clicks.size() >= 2; }));
  EXPECT_EQ(clicks, (std::vector<QPoint>{{1224, 38}, {1246, 679}}));
}

TEST_F(XEmbedIconTest, LeavesTheTrayToAStatusNotifierItem) {
  const LookWatcher looks{program, [] {}};
  EmbeddingTrayPeer tray;
  std::optional<TrayWatcher> watcher(desktop);
  DesktopStatusItem item(program, RESOURCES, looks, log, [](QPoint) {});
  const menubarpicture::Title withoutFont{"\U000F0000", MenuBarBadge::dot, {MenuBarPalette::Case::light}};
  item.show({withoutFont, "t"});
  ASSERT_TRUE(spinUntil([&] { return !watcher->items.isEmpty(); }));
  EXPECT_FALSE(tray.hasEmbedded(22, 22));
  for (int times = 0; times < 2; ++times) {
    watcher.reset();
    ASSERT_TRUE(docks(tray));
    EXPECT_TRUE(spinUntil([&] {
      const auto picture = tray.picture(22, 22);
      return !picture.isNull() && picture.pixel(11, 11) == qRgb(0x1E, 0x7A, 0x46);
    })) << "the badge stands for what no font has";
    watcher.emplace(desktop);
    EXPECT_TRUE(goes(tray.icon()));
  }
}

}  // namespace
}  // namespace ostrel
