#pragma once

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <expected>
#include <memory>
#include <string>

#include "Platform/Desktop/DesktopLook.hpp"
#include "Platform/Desktop/Views/PanelState.hpp"
#include "Platform/Log.hpp"

namespace ostrel {

/// The panel's items in a window of any kind.
class PanelScene {
 public:
  /// The log outlives the scene.
  explicit PanelScene(Log& log);

  /// To be called before the first window: how windows are drawn.
  static void chooseRenderer();

  /// Makes the items; a sentence when they cannot be made.
  std::expected<void, std::string> fill(QQuickWindow& window);

  PanelState& state() { return state_; }
  void setLook(const DesktopLook& look);

  /// Brings all sizes up to date, which else waits for the next frame.
  void layOut();

  /// Gives back what earlier contents have left, while nobody waits for the panel.
  void tidy() { engine_.collectGarbage(); }

  /// In points, after `layOut`.
  QSize size() const;

  /// In points.
  int cornerRadius() const;

  QQuickItem& root() { return *root_; }

 private:
  Log& log_;
  PanelState state_;
  QQmlEngine engine_;
  std::unique_ptr<QQuickItem> root_;
};

}  // namespace ostrel
