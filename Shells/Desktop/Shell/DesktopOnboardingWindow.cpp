#include "Shells/Desktop/Shell/DesktopOnboardingWindow.hpp"

#include <utility>

namespace ostrel {

void DesktopOnboardingWindow::open(const OnboardingContent& content, OnboardingWindowEvents events) {
  auto made = makeView(events);
  if (!made) {
    log_.line("ostrel: the window cannot be shown: " + made.error());
    QMetaObject::invokeMethod(
        &later_,
        [closed = std::move(events.closed)] {
          if (closed) closed();
        },
        Qt::QueuedConnection);
    return;
  }
  view_ = std::move(*made);
  view_->open(content, theme_);
}

void DesktopOnboardingWindow::update(const OnboardingContent& content) {
  if (view_) view_->update(content);
}

void DesktopOnboardingWindow::clearToken() {
  if (view_) view_->clearToken();
}

void DesktopOnboardingWindow::close() {
  if (view_) view_->close();
}

void DesktopOnboardingWindow::activate() {
  if (view_) view_->activate();
}

void DesktopOnboardingWindow::setTheme(const DesktopTheme& theme) {
  theme_ = theme;
  if (view_) view_->setTheme(theme);
}

std::expected<std::unique_ptr<OnboardingView>, std::string> DesktopOnboardingWindow::makeView(
    OnboardingWindowEvents events) {
  const auto plugIn = loadViews_();
  if (!plugIn) return std::unexpected(plugIn.error());
  return (*plugIn)->makeOnboardingView(log_, std::move(events));
}

}  // namespace ostrel
