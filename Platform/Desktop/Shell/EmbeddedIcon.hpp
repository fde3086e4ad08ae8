#pragma once

#include <QImage>
#include <QPoint>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

namespace ostrel {

/// The icon as a window inside the tray, for trays that embed windows and know no other way.
class EmbeddedIcon {
 public:
  EmbeddedIcon() = default;
  EmbeddedIcon(const EmbeddedIcon&) = delete;
  EmbeddedIcon& operator=(const EmbeddedIcon&) = delete;
  virtual ~EmbeddedIcon() = default;

  /// The same icon in growing sizes, of which the one that suits the tray is drawn, and its title.
  virtual void show(std::vector<QImage> images, const QString& title) = 0;

  /// Whether the icon goes into the tray, now or whenever there is one. At first it does not.
  virtual void setWanted(bool isWanted) = 0;
};

/// A click calls `clicked` with the middle of the icon's edge towards the screen's middle, in the screens'
/// pixels. Nothing where the display is of another kind or the build has no such icon.
std::unique_ptr<EmbeddedIcon> makeEmbeddedIcon(std::function<void(QPoint)> clicked);

}  // namespace ostrel
