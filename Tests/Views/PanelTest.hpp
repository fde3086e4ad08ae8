#pragma once

#include <gtest/gtest.h>

#include <QQuickItem>
#include <QQuickWindow>

#include <functional>

#include "Platform/Desktop/ViewsPlugIn.hpp"
#include "Tests/Fakes/FakeLog.hpp"

namespace ostrel {

/// What an assistive tool reads of one item.
struct SpokenItem {
  std::string role;  ///< "button", "text", "heading", "group", "alert" or "other"
  std::string name;
  std::string description;
  bool isChecked = false;
  bool isFocusable = false;  ///< all that the toolkit tells of a control that is disabled
};

/// A panel without motion on a screen of 800 by 800. No test may leave a warning behind, or something in the
/// panel that an assistive tool cannot name.
class PanelTest : public testing::Test {
 protected:
  PanelTest();
  ~PanelTest() override;

  void open(const PanelContent& content);
  QQuickWindow& window() const;

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void click(const std::string& name);

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

  FakeLog log;
  std::vector<PanelButton> pressed;
  std::function<void()> onPress;  ///< called within the press, where it is there
  int losses = 0;
  DesktopLook look{Appearance::light, true, 1.0};
  PanelAnchor anchor{{600, 10}, {0, 24, 800, 776}};
  std::unique_ptr<PanelView> panel;

 private:
  void sendMouse(QEvent::Type type, QPointF place, quint64 milliseconds = 0);
  std::vector<std::string> unspoken() const;

  int frames_ = 0;
};

/// A protected device: the content that the logic makes, in a panel with room for it.
PanelContent protectedContent();

/// A device with cards, an update and a component that needs attention.
PanelContent unprotectedContent();

}  // namespace ostrel
