#include "Shells/Desktop/Views/Onboarding/OnboardingViewWindow.hpp"

#include <utility>

#include "Shells/Desktop/Views/Common/WindowPlace.hpp"
#include "Shells/Desktop/Views/Panel/PanelValues.hpp"

namespace ostrel {

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

void OnboardingViewWindow::open(const OnboardingContent& content, const DesktopTheme& theme) {
  scene_.setTheme(theme);
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

void OnboardingViewWindow::setTheme(const DesktopTheme& theme) {
  scene_.setTheme(theme);
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
  state_.setRoom(roomOf(window_).size());
  scene_.layOut();
  placeWindow(window_, scene_.size());
}

void OnboardingViewWindow::visibilityChanged() {
  if (window_.isVisible() || !std::exchange(isOpen_, false)) return;
  clearToken();
  scene_.tidy();
  if (events_.closed) events_.closed();
}

}  // namespace ostrel
