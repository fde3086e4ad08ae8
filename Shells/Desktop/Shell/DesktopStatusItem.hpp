#pragma once

#include <QImage>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "OstrelAgent/Status/MenuBarIcon.hpp"
#include "Platform/StatusItem.hpp"
#include "Shells/Desktop/Shell/StatusItemMenu.hpp"
#include "Shells/Desktop/Shell/StatusNotifierItem.hpp"
#include "Shells/Desktop/Shell/ThemeWatcher.hpp"

namespace ostrel {

/// The status item as an icon in the desktop's tray. The desktop has no system symbols.
class DesktopStatusItem final : public StatusItem {
 public:
  /// Each click calls `clicked` with its place in the screens' pixels.
  DesktopStatusItem(DesktopBus& bus, std::string resources, const ThemeWatcher& themeWatcher, Log& log,
                    std::function<void(QPoint)> clicked);

  void install(Events events) override { events_ = std::move(events); }
  std::optional<Appearance> appearance() const override;
  bool hasImage(std::string_view name) const override;
  bool hasSymbol(std::string_view) const override { return false; }
  void show(const MenuBarIcon& icon) override;
  void showMenu(const std::vector<PanelButton>& buttons) override { menu_.setButtons(buttons); }

  const Events& events() const { return events_; }

 private:
  const std::vector<QImage>& images();

  std::string resources_;
  const ThemeWatcher& themeWatcher_;
  Events events_;
  std::optional<MenuBarPicture> picture_;
  std::vector<QImage> images_;  ///< of the picture, once a tray has asked for them
  StatusItemMenu menu_;
  StatusNotifierItem item_;
};

}  // namespace ostrel
