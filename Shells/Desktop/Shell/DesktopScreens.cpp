#include "Shells/Desktop/Shell/DesktopScreens.hpp"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <utility>

namespace ostrel {

namespace {

constexpr qint64 maxClickDuration = 400;  // milliseconds from the loss of focus to the click that caused it

/// A screen's corner is the same in pixels and in points.
QRect pixelsOf(const QScreen& screen) {
  return {screen.geometry().topLeft(), screen.geometry().size() * screen.devicePixelRatio()};
}

/// The place in pixels as a place in points; the nearest of the screen when it is beyond.
QPoint pointOn(const QScreen& screen, QPoint place) {
  const auto pixels = pixelsOf(screen);
  const QPoint inside(std::clamp(place.x(), pixels.left(), pixels.right()),
                      std::clamp(place.y(), pixels.top(), pixels.bottom()));
  const auto way = inside - pixels.topLeft();
  const double ratio = screen.devicePixelRatio();
  return pixels.topLeft() + QPoint(static_cast<int>(way.x() / ratio), static_cast<int>(way.y() / ratio));
}

PanelAnchor anchorOf(QPoint place) {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {};
  for (const auto* each : QGuiApplication::screens()) {
    if (!place.isNull() && pixelsOf(*each).contains(place)) screen = each;
  }
  const auto available = screen->availableGeometry();
  // A host that gives no place sends (0, 0): take where trays usually are.
  const auto click = place.isNull() ? available.topRight() : pointOn(*screen, place);
  return {{click.x(), click.y()}, {available.x(), available.y(), available.width(), available.height()}};
}

}  // namespace

void DesktopScreens::onPanelButton(std::function<void(const PanelButton&)> pressed) {
  pressed_ = std::move(pressed);
}

bool DesktopScreens::isPanelShown() const { return view_ && view_->isShown(); }

void DesktopScreens::openPanel(const PanelContent& content) {
  if (yields_()) return;
  if (auto* panel = view()) panel->open(content, anchor_, theme_);
}

void DesktopScreens::updatePanel(const PanelContent& content) {
  if (view_) view_->update(content);
}

void DesktopScreens::closePanel() {
  if (view_) view_->close();
}

std::optional<double> DesktopScreens::visibleHeight() const {
  if (anchor_.available.height <= 0) return std::nullopt;
  return anchor_.available.height;
}

void DesktopScreens::setClick(QPoint place) { anchor_ = anchorOf(place); }

bool DesktopScreens::takeClosingClick() {
  const bool hasClosed = sinceFocusLoss_.isValid() && sinceFocusLoss_.elapsed() < maxClickDuration;
  sinceFocusLoss_.invalidate();
  return hasClosed;
}

void DesktopScreens::setTheme(const DesktopTheme& theme) {
  theme_ = theme;
  if (view_) view_->setTheme(theme);
}

/// Null where the views cannot be loaded, which is logged once.
PanelView* DesktopScreens::view() {
  if (view_ || hasFailed_) return view_.get();
  const auto plugIn = loadViews_();
  PanelViewEvents events{.pressed =
                             [this](const PanelButton& button) {
                               if (pressed_) pressed_(button);
                             },
                         .lostFocus = [this] { sinceFocusLoss_.start(); }};
  auto made = plugIn
                  ? (*plugIn)->makePanelView(log_, std::move(events))
                  : std::expected<std::unique_ptr<PanelView>, std::string>(std::unexpected(plugIn.error()));
  if (!made) {
    hasFailed_ = true;
    log_.line("ostrel: the panel cannot be shown: " + made.error());
    return nullptr;
  }
  view_ = std::move(*made);
  return view_.get();
}

}  // namespace ostrel
