#pragma once

#include <QQuickWindow>

#include "Shells/Desktop/Views/Common/Scene.hpp"
#include "Shells/Desktop/Views/Window/AgentWindowState.hpp"
#include "Shells/Desktop/ViewsPlugIn.hpp"

namespace ostrel {

/// The agent window: a window with a frame that the user can resize. It is kept for the next opening.
class AgentViewWindow final : public AgentWindowView {
 public:
  [[nodiscard]] static std::expected<std::unique_ptr<AgentWindowView>, std::string> make(
      Log& log, AgentWindowEvents events, const AgentWindowContent& content, const DesktopTheme& theme);

  void open(const AgentWindowContent& content, const WindowSize& size, const DesktopTheme& theme) override;
  void update(const AgentWindowContent& content) override;
  void setTheme(const DesktopTheme& theme) override { scene_.setTheme(theme); }
  void close() override { window_.close(); }

 private:
  AgentViewWindow(Log& log, AgentWindowEvents events);

  void connectState();
  void sizeChanged();
  void visibilityChanged();

  AgentWindowEvents events_;
  QQuickWindow window_;
  AgentWindowState state_;
  Scene scene_;
  bool isOpen_ = false;
};

}  // namespace ostrel
