#include "Shells/Desktop/Shell/IconImage.hpp"

#include <gtest/gtest.h>

#include <QColor>
#include <QGuiApplication>
#include <utility>

#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

constexpr MenuBarPalette light{MenuBarPalette::Case::light};
constexpr MenuBarPalette dark{MenuBarPalette::Case::dark};
constexpr MenuBarBadge badges[] = {MenuBarBadge::dot, MenuBarBadge::square, MenuBarBadge::octagon};

/// 54 pixels, red all over, but for the lower half of the left third, where nothing is.
QImage glyph() {
  QImage image(54, 54, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::red);
  for (int y = 27; y < 54; ++y) {
    for (int x = 0; x < 18; ++x) image.setPixelColor(x, y, Qt::transparent);
  }
  return image;
}

void expectPixel(const QImage& image, int x, int y, CanvasColor color, int alpha) {
  const QColor pixel = image.pixelColor(x, y);
  EXPECT_NEAR(pixel.alpha(), alpha, 1) << x << ',' << y;
  if (alpha == 0) return;
  EXPECT_NEAR(pixel.red(), color.red, 2) << x << ',' << y;
  EXPECT_NEAR(pixel.green(), color.green, 2) << x << ',' << y;
  EXPECT_NEAR(pixel.blue(), color.blue, 2) << x << ',' << y;
}

/// The sum of the alphas, in opaque pixels.
double ink(const QImage& image) {
  double sum = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) sum += image.pixelColor(x, y).alphaF();
  }
  return sum;
}

TEST(IconImage, TintsTheGlyphAndDimsItUnderAWarning) {
  for (const auto badge : badges) {
    const int alpha = badge == MenuBarBadge::dot ? 217 : 102;
    for (const auto& [palette, tint] : {std::pair{light, CanvasColor{}}, {dark, {255, 255, 255}}}) {
      SCOPED_TRACE(testing::Message() << static_cast<int>(badge) << ' ' << palette.glyphName());
      const auto image = iconImage(glyph(), badge, palette);
      ASSERT_EQ(image.size(), QSize(54, 54));
      for (const auto& [x, y] : {std::pair{0, 0}, {53, 0}, {43, 10}, {25, 43}, {43, 25}}) {
        expectPixel(image, x, y, tint, alpha);
      }
      expectPixel(image, 5, 40, tint, 0);
    }
  }
}

// The badge's centre is 43.2 pixels from the left and from above; it reaches some 10 pixels around it.
TEST(IconImage, ShowsTheBadgeInTheLowerRightCornerWithAGapAround) {
  for (const auto badge : badges) {
    for (const auto palette : {light, dark}) {
      SCOPED_TRACE(testing::Message() << static_cast<int>(badge) << ' ' << palette.glyphName());
      const auto image = iconImage(glyph(), badge, palette);
      for (const auto& [x, y] : {std::pair{36, 43}, {49, 43}, {43, 51}}) {
        expectPixel(image, x, y, palette.color(badge), 255);
      }
      for (const auto& [x, y] : {std::pair{30, 43}, {43, 30}, {33, 33}}) {
        expectPixel(image, x, y, {}, 0);
      }
    }
  }
}

TEST(IconImage, GivesEachBadgeItsOwnOutlineAndMark) {
  const auto dot = iconImage(glyph(), MenuBarBadge::dot, light);
  const auto square = iconImage(glyph(), MenuBarBadge::square, light);
  const auto octagon = iconImage(glyph(), MenuBarBadge::octagon, light);
  const auto color = [](MenuBarBadge badge) { return light.color(badge); };
  expectPixel(square, 35, 35, color(MenuBarBadge::square), 255);
  expectPixel(octagon, 35, 35, {}, 0);
  for (const auto& [x, y] : {std::pair{43, 43}, {43, 38}, {43, 49}, {47, 47}, {39, 39}, {47, 39}}) {
    expectPixel(dot, x, y, color(MenuBarBadge::dot), 255);
  }
  for (const auto& [x, y] : {std::pair{43, 38}, {43, 43}, {43, 49}}) expectPixel(square, x, y, {}, 0);
  expectPixel(square, 43, 46, color(MenuBarBadge::square), 255);
  for (const auto& [x, y] : {std::pair{43, 43}, {47, 47}, {39, 39}, {47, 39}, {39, 47}}) {
    expectPixel(octagon, x, y, {}, 0);
  }
  expectPixel(octagon, 43, 37, color(MenuBarBadge::octagon), 255);
}

TEST(IconImage, DrawsATitleAsLargeAsItFitsOrItsBadgeWithoutAFont) {
  char name[] = "test";
  char* arguments[] = {name, nullptr};
  int count = 1;
  const QGuiApplication application(count, arguments);
  const auto draw = [](const char* text) { return titleImage({text, MenuBarBadge::octagon, dark}, 54); };
  const auto color = dark.color(MenuBarBadge::octagon);
  // A full block, which leaves out what is beside it, since it is higher than wide.
  const auto block = draw("\u2588");
  expectPixel(block, 27, 27, color, 255);
  expectPixel(block, 27, 2, color, 255);
  expectPixel(block, 27, 51, color, 255);
  expectPixel(block, 2, 27, {}, 0);
  EXPECT_EQ(draw("\u2588\uFE0F"), block) << "a choice of shape needs no shape";
  const auto badge = draw("\U000F0000");
  expectPixel(badge, 27, 5, color, 255);
  expectPixel(badge, 5, 27, color, 255);
  expectPixel(badge, 27, 27, {}, 0);
  EXPECT_EQ(draw("\u2588\U000F0000"), badge);
}

TEST(IconImage, LoadsTheBundlesGlyphsBlackOnTransparent) {
  for (const int scale : {1, 2, 3}) {
    double inks[] = {0, 0};
    for (const auto palette : {light, dark}) {
      const auto picture = loadGlyph(RESOURCES, palette.glyphName(), scale);
      ASSERT_TRUE(picture) << palette.glyphName() << scale;
      EXPECT_EQ(picture->size(), QSize(18, 18) * scale) << palette.glyphName();
      const int last = 18 * scale - 1;
      for (const auto& [x, y] : {std::pair{0, 0}, {last, 0}, {0, last}, {last, last}}) {
        EXPECT_EQ(picture->pixel(x, y), 0u) << palette.glyphName() << scale;
      }
      for (int x = 0; x <= last; ++x) {
        EXPECT_EQ(picture->pixel(x, 7 * scale) & 0xFFFFFF, 0u) << palette.glyphName() << scale;
      }
      inks[palette == dark] = ink(*picture) / (scale * scale);
    }
    EXPECT_GT(inks[0], 50) << scale;
    EXPECT_LT(inks[1], inks[0]) << scale;
    EXPECT_GT(inks[1], 0.8 * inks[0]) << scale;
  }
}

TEST(IconImage, HasNoGlyphWhereNoFileCanBeRead) {
  const TemporaryFolder folder;
  const TemporaryFolder bundle;
  QImage(54, 54, QImage::Format_ARGB32).save(QString::fromStdString(bundle / "good.png"));
  const auto good = bundle.read("good.png");
  std::string claimed = good;
  // The header of an image with 60000 pixels on each side, and its checksum.
  claimed.replace(16, 17, std::string("\0\0\xEA\x60\0\0\xEA\x60\x8\x6\0\0\0\x80\xD2\x75\x42", 17));
  folder.write("empty.png", "");
  folder.write("text.png", "shield");
  folder.write("cut.png", good.substr(0, good.size() - 20));
  folder.write("claimed.png", claimed);
  folder.write("folder.png/file", good);
  QImage(513, 18, QImage::Format_ARGB32).save(QString::fromStdString(folder / "large.png"));
  QImage(18, 18, QImage::Format_RGB32).save(QString::fromStdString(folder / "other.png"), "bmp");
  for (const char* name : {"missing", "empty", "text", "cut", "claimed", "folder", "large", "other"}) {
    EXPECT_FALSE(hasGlyph(folder.path(), name)) << name;
    EXPECT_FALSE(loadGlyph(folder.path(), name, 3)) << name;
  }
  EXPECT_TRUE(hasGlyph(bundle.path(), "good"));
}

TEST(IconImage, TakesTheNextSmallerGlyphForOneThatCannotBeRead) {
  const TemporaryFolder folder;
  QImage(18, 18, QImage::Format_ARGB32).save(QString::fromStdString(folder / "glyph.png"));
  QImage(36, 36, QImage::Format_ARGB32).save(QString::fromStdString(folder / "glyph@2x.png"));
  folder.write("glyph@3x.png", "damaged");
  for (const auto& [scale, side] : {std::pair{0, 18}, {1, 18}, {2, 36}, {3, 36}, {4, 36}}) {
    EXPECT_EQ(loadGlyph(folder.path(), "glyph", scale).value_or(QImage()).width(), side) << scale;
  }
}

}  // namespace
}  // namespace ostrel
