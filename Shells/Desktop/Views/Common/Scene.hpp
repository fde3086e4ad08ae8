#pragma once

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <expected>
#include <memory>
#include <string>

#include "Platform/Log.hpp"
#include "Shells/Desktop/DesktopTheme.hpp"

namespace ostrel {

/// The items of one screen in a window of any kind.
class Scene {
 public:
  /// The log outlives the scene.
  explicit Scene(Log& log);

  /// To be called before the first window: how windows are drawn.
  static void chooseRenderer();

  /// Makes the items of that file of Views/, whose required property of that name is the state. A sentence
  /// when they cannot be made. The state outlives the scene.
  [[nodiscard]] std::expected<void, std::string> fill(QQuickWindow& window, const char* file,
                                                      const char* property, QObject& state);

  void setTheme(const DesktopTheme& theme);

  /// Updates all sizes at once rather than with the next frame.
  void layOut();

  /// Collects the garbage of earlier contents, while no user waits for the screen.
  void tidy() { engine_.collectGarbage(); }

  /// In points, after `layOut`.
  QSize size() const;

  QQuickItem& root() { return *root_; }

 private:
  Log& log_;
  QQmlEngine engine_;
  std::unique_ptr<QQuickItem> root_;
};

}  // namespace ostrel
