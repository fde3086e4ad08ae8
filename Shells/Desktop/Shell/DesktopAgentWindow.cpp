#include "Shells/Desktop/Shell/DesktopAgentWindow.hpp"

namespace ostrel {

void DesktopAgentWindow::open(const AgentWindowContent& content, const WindowSize& size) {
  if (auto* window = view(content)) return window->open(content, size, theme_);
  QMetaObject::invokeMethod(
      &later_, [this] { events_.closed(); }, Qt::QueuedConnection);
}

void DesktopAgentWindow::update(const AgentWindowContent& content) {
  if (view_) view_->update(content);
}

void DesktopAgentWindow::close() {
  if (view_) view_->close();
}

void DesktopAgentWindow::setTheme(const DesktopTheme& theme) {
  theme_ = theme;
  if (view_) view_->setTheme(theme);
}

/// Null where the views cannot be loaded, which is logged once.
AgentWindowView* DesktopAgentWindow::view(const AgentWindowContent& content) {
  if (view_ || hasFailed_) return view_.get();
  const auto plugIn = loadViews_();
  auto made =
      plugIn ? (*plugIn)->makeAgentWindowView(log_, events_, content, theme_)
             : std::expected<std::unique_ptr<AgentWindowView>, std::string>(std::unexpected(plugIn.error()));
  if (!made) {
    hasFailed_ = true;
    log_.line("ostrel: the agent window cannot be shown: " + made.error());
    return nullptr;
  }
  view_ = std::move(*made);
  return view_.get();
}

}  // namespace ostrel
