#pragma once

#include <QElapsedTimer>
#include <QPoint>
#include <memory>

#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

/// The panel as a window of the Views plug-in, which is loaded when the panel first opens.
class DesktopScreens final : public Screens {
 public:
  using LoadViews = std::function<std::expected<const ViewsPlugIn*, std::string>()>;

  /// `yields` returns whether an alert must be answered before the panel may open.
  DesktopScreens(LoadViews loadViews, Log& log, std::function<bool()> yields)
      : loadViews_(std::move(loadViews)), log_(log), yields_(std::move(yields)) {}

  void onPanelButton(std::function<void(const PanelButton&)> pressed) override;
  bool isPanelShown() const override;
  void openPanel(const PanelContent& content) override;
  void updatePanel(const PanelContent& content) override;
  void closePanel() override;
  std::optional<double> visibleHeight() const override;

  /// Where the next panel is to open: the place of a click in the screens' pixels.
  void setClick(QPoint place);

  /// Call for each click: true for the one that has just closed the panel by taking the focus from it.
  bool takeClosingClick();

  void setTheme(const DesktopTheme& theme);

 private:
  PanelView* view();

  LoadViews loadViews_;
  Log& log_;
  std::function<bool()> yields_;
  std::function<void(const PanelButton&)> pressed_;
  std::unique_ptr<PanelView> view_;
  bool hasFailed_ = false;
  PanelAnchor anchor_;
  DesktopTheme theme_;
  QElapsedTimer sinceFocusLoss_;
};

}  // namespace ostrel
