#pragma once

#include <gtest/gtest.h>

#include <QQuickItem>
#include <QQuickWindow>

#include <functional>

#include "Shells/Desktop/DesktopTheme.hpp"
#include "Tests/Fakes/FakeLog.hpp"

namespace ostrel {

/// What an assistive tool reads of one item.
struct SpokenItem {
  std::string role;  ///< "button", "text", "heading", "group", "alert", "field", "list", "item", "switch",
                     ///< "choice" or "other"
  std::string name;
  std::string description;
  bool isChecked = false;
  bool isFocusable = false;  ///< the only sign of a disabled control that the toolkit gives
};

/// A view in its window, without motion. No test may leave a warning behind.
class ViewTest : public testing::Test {
 protected:
  ViewTest();
  ~ViewTest() override;

  QQuickWindow& window() const;

  /// Waits until the window that was just opened is active and rests.
  void awaitWindow();

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void click(const std::string& name);
  void clickAt(QPointF place);

  /// Over the middle of the window: a notch of the wheel, or a quick push upwards by 60 points.
  void turnWheel();
  void drag();

  /// As an assistive tool does.
  void pressBySpeech(const std::string& name);

  /// The accessible name of what has the keyboard.
  std::string focused() const;

  std::vector<SpokenItem> spoken() const;

  /// The first item with that accessible name, or nothing.
  QQuickItem* item(const std::string& name) const;
  bool isSpoken(const std::string& name) const { return item(name) != nullptr; }

  /// In points of the window.
  QRectF place(const std::string& name) const;

  /// The colour of one point of the window.
  QColor colorAt(int x, int y) const;

  /// Frames until the window rests.
  int frames();

  /// Lets the toolkit work until that holds; false when it takes too long.
  bool becomes(const std::function<bool()>& condition);

  /// What an assistive tool cannot name, and what the keyboard meets but such a tool does not.
  std::vector<std::string> unspoken() const;

  FakeLog log;
  DesktopTheme theme{Appearance::light, true, 1.0};

 private:
  void sendMouse(QEvent::Type type, QPointF place, quint64 milliseconds = 0);

  int frames_ = 0;
  QMetaObject::Connection counting_;
};

/// Texts and controls of the item that reach out of a window of that width or of what holds them.
std::vector<std::string> outside(const QQuickItem& item, double width);

}  // namespace ostrel
