#pragma once

#include <QQuickWindow>

#include "Shells/Desktop/Views/Common/Scene.hpp"
#include "Shells/Desktop/Views/Panel/PanelState.hpp"
#include "Shells/Desktop/ViewsPlugIn.hpp"

namespace ostrel {

/// The panel as a window without a frame. It is kept for the next opening.
class PanelWindow final : public PanelView {
 public:
  [[nodiscard]] static std::expected<std::unique_ptr<PanelView>, std::string> make(Log& log,
                                                                                   PanelViewEvents events);

  bool isShown() const override { return window_.isVisible(); }
  void open(const PanelContent& content, const PanelAnchor& anchor, const DesktopTheme& theme) override;
  void update(const PanelContent& content) override;
  void setTheme(const DesktopTheme& theme) override;
  void close() override;

 private:
  PanelWindow(Log& log, PanelViewEvents events);

  bool show(const PanelContent& content);
  void activityChanged();
  void place();

  PanelViewEvents events_;
  QQuickWindow window_;
  PanelState state_;
  Scene scene_;
  PanelAnchor anchor_;
};

}  // namespace ostrel
