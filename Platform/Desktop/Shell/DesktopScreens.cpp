#include "Platform/Desktop/Shell/DesktopScreens.hpp"

#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace ostrel {

namespace {

constexpr qint64 longestClick = 400;  // milliseconds from the loss of focus to the click that caused it

/// Places of the bus are in pixels; a screen's corner is the same in pixels and in points.
PanelAnchor anchorOf(QPoint place) {
  const QScreen* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return {};
  for (const auto* each : QGuiApplication::screens()) {
    const auto geometry = each->geometry();
    const QRect pixels(geometry.topLeft(), geometry.size() * each->devicePixelRatio());
    if (!place.isNull() && pixels.contains(place)) screen = each;
  }
  const auto corner = screen->geometry().topLeft();
  const auto available = screen->availableGeometry();
  // A host that does not tell the place: where trays usually are.
  const auto click =
      place.isNull() ? available.topRight() : corner + (place - corner) / screen->devicePixelRatio();
  return {{click.x(), click.y()}, {available.x(), available.y(), available.width(), available.height()}};
}

}  // namespace

void DesktopScreens::onPanelButton(std::function<void(const PanelButton&)> pressed) {
  pressed_ = std::move(pressed);
}

bool DesktopScreens::isPanelShown() const { return view_ && view_->isShown(); }

void DesktopScreens::openPanel(const PanelContent& content) {
  if (auto* panel = view()) panel->open(content, anchor_, look_);
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

bool DesktopScreens::hasClosedByThisClick() const {
  return sinceFocusLoss_.isValid() && sinceFocusLoss_.elapsed() < longestClick;
}

void DesktopScreens::setLook(const DesktopLook& look) {
  look_ = look;
  if (view_) view_->setLook(look);
}

/// Nothing where the views cannot be loaded, which is told once.
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
