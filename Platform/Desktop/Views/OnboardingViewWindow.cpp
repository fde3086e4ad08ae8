#include "Platform/Desktop/Views/OnboardingViewWindow.hpp"

#include <QScreen>
#include <algorithm>
#include <utility>

#include "Platform/Desktop/Views/PanelValues.hpp"

namespace ostrel {

namespace {

/// Room for the frame of a window that is not on the screen yet, in points.
constexpr QMargins usualFrame(4, 36, 4, 4);

}  // namespace

std::expected<std::unique_ptr<OnboardingView>, std::string> OnboardingViewWindow::make(
    Log& log, OnboardingWindowEvents events) {
  Scene::chooseRenderer();
  std::unique_ptr<OnboardingViewWindow> made(new OnboardingViewWindow(log, std::move(events)));
  auto filled =
      made->scene_.fill(made->window_, OnboardingState::screen, OnboardingState::property, made->state_);
  if (!filled) return std::unexpected(filled.error());
  return made;
}

OnboardingViewWindow::OnboardingViewWindow(Log& log, OnboardingWindowEvents events)
    : events_(std::move(events)), scene_(log) {
  window_.setFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint);
  QObject::connect(&state_, &OnboardingState::pressed, &state_,
                   [this](OnboardingAction action, const QString& token) {
                     if (events_.pressed) events_.pressed(action, token.toStdString());
                   });
  QObject::connect(&window_, &QWindow::visibleChanged, &state_, [this] { visibilityChanged(); });
}

void OnboardingViewWindow::open(const OnboardingContent& content, const DesktopLook& look) {
  scene_.setLook(look);
  show(content);
  emit state_.stageChanged();
  fit();
  isOpen_ = true;
  window_.show();
  activate();
}

void OnboardingViewWindow::update(const OnboardingContent& content) {
  if (!isOpen_) return;
  show(content);
  fit();
}

void OnboardingViewWindow::setLook(const DesktopLook& look) {
  scene_.setLook(look);
  if (isOpen_) fit();
}

void OnboardingViewWindow::activate() {
  if (isOpen_) window_.requestActivate();
}

void OnboardingViewWindow::show(const OnboardingContent& content) {
  window_.setTitle(textOf(content.windowTitle));
  state_.show(content);
}

/// Gives the window the size of what it holds, as far as the screen has room for it.
void OnboardingViewWindow::fit() {
  const auto available = window_.screen()->availableGeometry();
  const auto frame = isOpen_ ? window_.frameMargins() : usualFrame;
  state_.setRoom(available.marginsRemoved(frame).size());
  scene_.layOut();
  place(available, frame);
}

/// In the middle at first; a window that has grown stays where it is, but on the screen.
void OnboardingViewWindow::place(const QRect& available, const QMargins& frame) {
  const auto size = scene_.size();
  if (isOpen_ && size == window_.size()) return;
  const auto room = available.marginsRemoved(frame);
  QRect place(isOpen_ ? window_.position() : QPoint(), size);
  if (!isOpen_) place.moveCenter(room.center());
  if (place.bottom() > room.bottom()) place.moveBottom(room.bottom());
  if (place.top() < room.top()) place.moveTop(room.top());
  // A window without a choice of sizes cannot be resized.
  window_.setMinimumSize(size);
  window_.setMaximumSize(size);
  window_.setGeometry(place);
}

void OnboardingViewWindow::visibilityChanged() {
  if (window_.isVisible() || !std::exchange(isOpen_, false)) return;
  clearToken();
  scene_.tidy();
  if (events_.closed) events_.closed();
}

}  // namespace ostrel
