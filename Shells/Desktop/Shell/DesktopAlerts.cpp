#include "Shells/Desktop/Shell/DesktopAlerts.hpp"

#include <utility>

namespace ostrel {

void DesktopAlerts::show(const Alert& alert, std::function<void(std::size_t)> completion) {
  waiting_.push_back({alert, std::move(completion)});
  if (waiting_.size() == 1) openFirst();
}

bool DesktopAlerts::activate() {
  if (waiting_.empty()) return false;
  if (view_) view_->activate();
  return true;
}

void DesktopAlerts::setTheme(const DesktopTheme& theme) {
  theme_ = theme;
  if (view_) view_->setTheme(theme);
}

std::expected<void, std::string> DesktopAlerts::makeView() {
  if (view_) return {};
  const auto plugIn = loadViews_();
  if (!plugIn) return std::unexpected(plugIn.error());
  auto made = (*plugIn)->makeAlertView(log_, [this](std::size_t button) { finishLater(button); });
  if (!made) return std::unexpected(made.error());
  view_ = std::move(*made);
  return {};
}

void DesktopAlerts::openFirst() {
  const auto& alert = waiting_.front().alert;
  if (const auto made = makeView(); !made) {
    log_.line("ostrel: the alert cannot be shown: " + made.error());
    return finishLater(alert.buttons.size() - 1);
  }
  opens_();
  view_->open(alert, theme_);
}

/// Posted, so that neither the caller of `show` nor the window is re-entered.
void DesktopAlerts::finishLater(std::size_t button) {
  QMetaObject::invokeMethod(
      &later_, [this, button] { finish(button); }, Qt::QueuedConnection);
}

void DesktopAlerts::finish(std::size_t button) {
  const auto completion = std::move(waiting_.front().completion);
  waiting_.pop_front();
  if (!waiting_.empty()) openFirst();
  completion(button);
}

}  // namespace ostrel
