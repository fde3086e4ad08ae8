#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "OstrelAgent/Status/MenuBarIcon.hpp"

namespace ostrel {
namespace {

constexpr MenuBarPalette light{MenuBarPalette::Case::light};
constexpr MenuBarPalette dark{MenuBarPalette::Case::dark};

/// Records each drawing call as a line of text, and the paths of fills and strokes.
class RecordingCanvas : public Canvas {
 public:
  std::vector<std::string> lines;
  std::vector<CanvasPath> paths;

  void drawGlyph(const CanvasRect& rect, double opacity) override {
    std::ostringstream line;
    line << "glyph in " << text(rect) << " at " << opacity;
    lines.push_back(line.str());
  }
  void fillRect(const CanvasRect& rect, CanvasColor color, Compositing compositing) override {
    lines.push_back("fill " + text(rect) + text(color, compositing));
  }
  void fill(const CanvasPath& path, CanvasColor color, Compositing compositing) override {
    lines.push_back("fill" + text(color, compositing));
    paths.push_back(path);
  }
  void stroke(const CanvasPath& path, double lineWidth, CanvasColor color, Compositing compositing) override {
    std::ostringstream line;
    line << "stroke of " << lineWidth << text(color, compositing);
    lines.push_back(line.str());
    paths.push_back(path);
  }
  bool drawText(std::string_view text, const CanvasRect& rect, CanvasColor color) override {
    if (!hasFont) return false;
    lines.push_back(std::string(text) + " in " + this->text(rect) +
                    this->text(color, Compositing::sourceOver));
    return true;
  }

  bool hasFont = true;

 private:
  static std::string text(const CanvasRect& rect) {
    std::ostringstream line;
    line << rect.x << ',' << rect.y << ' ' << rect.width << 'x' << rect.height;
    return line.str();
  }
  static std::string text(CanvasColor color, Compositing compositing) {
    constexpr const char* names[] = {"over", "atop", "out"};
    std::ostringstream line;
    line << " #" << std::hex << std::uppercase << std::setfill('0');
    for (const int part : {color.red, color.green, color.blue}) line << std::setw(2) << part;
    line << ' ' << names[static_cast<int>(compositing)];
    return line.str();
  }
};

RecordingCanvas drawn(double width, double height, MenuBarBadge badge, MenuBarPalette palette = light) {
  RecordingCanvas canvas;
  drawMenuBarImage(canvas, width, height, badge, palette);
  return canvas;
}

CanvasRect bounds(const std::vector<CanvasPoint>& points) {
  const auto [left, right] = std::ranges::minmax(points, {}, &CanvasPoint::x);
  const auto [bottom, top] = std::ranges::minmax(points, {}, &CanvasPoint::y);
  return {left.x, bottom.y, right.x - left.x, top.y - bottom.y};
}

CanvasRect bounds(const CanvasPath& path) {
  if (const auto* oval = std::get_if<canvaspath::Oval>(&path)) return oval->rect;
  if (const auto* rounded = std::get_if<canvaspath::RoundedRect>(&path)) return rounded->rect;
  return bounds(std::get<canvaspath::Polygon>(path).corners);
}

/// Around the parts of the mark, which are drawn after gap and badge.
CanvasRect markBounds(const RecordingCanvas& canvas) {
  std::vector<CanvasPoint> corners;
  for (std::size_t part = 3; part < canvas.paths.size(); ++part) {
    const auto [x, y, width, height] = bounds(canvas.paths[part]);
    corners.insert(corners.end(), {{x, y}, {x + width, y + height}});
  }
  return bounds(corners);
}

void expectNear(const CanvasRect& rect, const CanvasRect& expected) {
  EXPECT_NEAR(rect.x, expected.x, 1e-9);
  EXPECT_NEAR(rect.y, expected.y, 1e-9);
  EXPECT_NEAR(rect.width, expected.width, 1e-9);
  EXPECT_NEAR(rect.height, expected.height, 1e-9);
}

TEST(MenuBarImage, IsGlyphThenTintThenGapThenBadgeThenMark) {
  struct Row {
    MenuBarBadge badge;
    MenuBarPalette palette;
    const char* opacity;
    const char* tint;
    const char* color;
    std::size_t markParts;
  };
  const Row rows[] = {
      {MenuBarBadge::dot, light, "0.85", "#000000", "#1E7A46", 0},
      {MenuBarBadge::dot, dark, "0.85", "#FFFFFF", "#4CBF7A", 0},
      {MenuBarBadge::square, light, "0.4", "#000000", "#A3610A", 2},
      {MenuBarBadge::square, dark, "0.4", "#FFFFFF", "#E3A83A", 2},
      {MenuBarBadge::octagon, light, "0.4", "#000000", "#B5352C", 1},
      {MenuBarBadge::octagon, dark, "0.4", "#FFFFFF", "#E2675D", 1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.color);
    const auto canvas = drawn(18, 18, row.badge, row.palette);
    std::vector<std::string> expected = {
        std::string("glyph in 0,0 18x18 at ") + row.opacity,
        std::string("fill 0,0 18x18 ") + row.tint + " atop",
        "fill #000000 out",
        "stroke of 3.2 #000000 out",
        std::string("fill ") + row.color + " over",
    };
    expected.insert(expected.end(), row.markParts, "fill #000000 out");
    ASSERT_EQ(canvas.lines, expected);
    EXPECT_EQ(canvas.paths[0], canvas.paths[1]);
    EXPECT_EQ(canvas.paths[0], canvas.paths[2]);
  }
}

TEST(MenuBarImage, IsTheEmojiWithoutAGlyphOrTheBadgeWithoutAFont) {
  RecordingCanvas canvas;
  const menubarpicture::Title title{"!", MenuBarBadge::square, dark};
  drawMenuBarTitle(canvas, 36, title);
  EXPECT_EQ(canvas.lines, std::vector<std::string>{"! in 0,0 36x36 #E3A83A over"});
  canvas = {};
  canvas.hasFont = false;
  drawMenuBarTitle(canvas, 36, title);
  EXPECT_EQ(canvas.lines,
            (std::vector<std::string>{"fill #E3A83A over", "fill #000000 out", "fill #000000 out"}));
  EXPECT_EQ(canvas.paths[0], badgePath(MenuBarBadge::square, {0, 0, 36, 36}));
}

TEST(MenuBarImage, PlacesTheBadgeByTheGlyphsHeight) {
  struct Row {
    double width;
    double height;
    CanvasRect badge;
    const char* gap;
  };
  const Row rows[] = {
      {18, 18, {10.65, -0.15, 7.5, 7.5}, "stroke of 3.2 #000000 out"},
      {22, 36, {7.3, -0.3, 15, 15}, "stroke of 6.4 #000000 out"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.height);
    const double width = row.badge.width;
    const auto dot = drawn(row.width, row.height, MenuBarBadge::dot);
    expectNear(std::get<canvaspath::Oval>(dot.paths[0]).rect, row.badge.inset(0.03 * width));
    EXPECT_EQ(dot.lines[3], row.gap);
    const auto square = drawn(row.width, row.height, MenuBarBadge::square);
    const auto& rounded = std::get<canvaspath::RoundedRect>(square.paths[0]);
    expectNear(rounded.rect, row.badge.inset(0.05 * width));
    EXPECT_NEAR(rounded.radius, 0.22 * width, 1e-9);
    const auto octagon = drawn(row.width, row.height, MenuBarBadge::octagon);
    const auto box = bounds(octagon.paths[0]);
    EXPECT_NEAR(box.center().x, row.badge.center().x, 1e-9);
    EXPECT_NEAR(box.center().y, row.badge.center().y, 1e-9);
  }
}

TEST(MenuBarImage, TheOctagonHasItsFlatSidesUpDownLeftAndRight) {
  const auto octagon = std::get<canvaspath::Polygon>(badgePath(MenuBarBadge::octagon, {10, 20, 100, 100}));
  ASSERT_EQ(octagon.corners.size(), 8u);
  for (std::size_t corner = 0; corner < 8; ++corner) {
    const double x = octagon.corners[corner].x - 60;
    const double y = octagon.corners[corner].y - 70;
    EXPECT_NEAR(std::hypot(x, y), 47, 1e-9) << corner;
    const double degrees = std::atan2(y, x) * 180 / std::numbers::pi;
    EXPECT_NEAR(degrees < 0 ? degrees + 360 : degrees, 22.5 + 45 * static_cast<double>(corner), 1e-9);
  }
}

TEST(MenuBarImage, TheMarkIsLargeAndCentredInTheBadge) {
  for (const auto badge : {MenuBarBadge::square, MenuBarBadge::octagon}) {
    SCOPED_TRACE(static_cast<int>(badge));
    const auto canvas = drawn(18, 18, badge);
    const auto outline = bounds(canvas.paths[0]);
    const auto mark = markBounds(canvas);
    EXPECT_NEAR(mark.center().x, outline.center().x, 1e-9);
    EXPECT_NEAR(mark.center().y, outline.center().y, 1e-9);
    EXPECT_LE(std::max(mark.width, mark.height), outline.height - 1.5);
    EXPECT_GE(mark.height, 0.55 * outline.height);
  }
}

TEST(MenuBarImage, TheExclamationMarkHasItsBarAboveItsPoint) {
  const auto canvas = drawn(18, 18, MenuBarBadge::square);
  const auto bar = bounds(canvas.paths[3]);
  const auto point = bounds(canvas.paths[4]);
  EXPECT_GE(bar.y - (point.y + point.height), 0.7);
  EXPECT_GE(bar.height, 2 * point.height);
  EXPECT_GE(std::min(bar.width, point.width), 1);
}

TEST(MenuBarImage, TheCrossOfTheOctagonIsDiagonal) {
  const auto canvas = drawn(180, 180, MenuBarBadge::octagon);
  const auto center = bounds(canvas.paths[0]).center();
  const auto cross = std::get<canvaspath::Polygon>(canvas.paths[3]).corners;
  ASSERT_EQ(cross.size(), 12u);
  int far = 0;
  for (std::size_t corner = 0; corner < cross.size(); ++corner) {
    const auto& next = cross[(corner + 1) % cross.size()];
    const double x = cross[corner].x - center.x;
    const double y = cross[corner].y - center.y;
    EXPECT_GT(x * (next.y - center.y) - y * (next.x - center.x), 0) << "turns back at " << corner;
    if (std::hypot(x, y) < 15) continue;
    ++far;
    EXPECT_NEAR(std::abs(x), std::abs(y), 11) << "an arm is not diagonal at " << corner;
  }
  EXPECT_EQ(far, 8);
}

}  // namespace
}  // namespace ostrel
