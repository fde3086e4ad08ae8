#pragma once

#include <QImage>
#include <QPoint>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Appearance.hpp"

namespace ostrel {

/// The icon as a window inside the tray, for trays that embed windows and know no other way.
class EmbeddedIcon {
 public:
  /// What the icon calls, never inside one of its own operations.
  struct Events {
    std::function<void(QPoint)> clicked;  ///< with the middle of the icon's edge towards the screen's middle,
                                          ///< in the screens' pixels
    std::function<void()> appearanceChanged;
  };

  /// The same icon in growing sizes, of which the one that suits the tray is drawn. Asked for only when there
  /// is a tray to draw it in.
  using Images = std::function<std::vector<QImage>()>;

  EmbeddedIcon() = default;
  EmbeddedIcon(const EmbeddedIcon&) = delete;
  EmbeddedIcon& operator=(const EmbeddedIcon&) = delete;
  virtual ~EmbeddedIcon() = default;

  virtual void show(Images images, const QString& title) = 0;

  /// Whether the icon goes into the tray, now or whenever there is one. At first it does not.
  virtual void setWanted(bool isWanted) = 0;

  /// Of the tray behind the icon; nothing as long as that is not known.
  virtual std::optional<Appearance> appearance() const = 0;
};

/// Nothing where the display is of another kind or the build has no such icon.
std::unique_ptr<EmbeddedIcon> makeEmbeddedIcon(EmbeddedIcon::Events events);

}  // namespace ostrel
