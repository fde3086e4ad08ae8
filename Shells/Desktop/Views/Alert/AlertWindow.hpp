#pragma once

#include <QQuickWindow>

#include "Shells/Desktop/Views/Alert/AlertState.hpp"
#include "Shells/Desktop/Views/Common/Scene.hpp"
#include "Shells/Desktop/ViewsPlugIn.hpp"

namespace ostrel {

/// An alert as a modal dialog with a frame and a close box. It is kept for the next one.
class AlertWindow final : public AlertView {
 public:
  [[nodiscard]] static std::expected<std::unique_ptr<AlertView>, std::string> make(
      Log& log, std::function<void(std::size_t)> closed);

  void open(const Alert& alert, const DesktopTheme& theme) override;
  void setTheme(const DesktopTheme& theme) override;
  void activate() override;

 private:
  AlertWindow(Log& log, std::function<void(std::size_t)> closed);

  void fit();
  void visibilityChanged();

  std::function<void(std::size_t)> closed_;
  QQuickWindow window_;
  AlertState state_;
  Scene scene_;
  bool isOpen_ = false;
  std::size_t answer_ = 0;  ///< the button that is reported when the window closes
};

}  // namespace ostrel
