#include "Tests/Shells/Desktop/Views/ViewTest.hpp"

#include <QAccessible>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "Tests/Shells/Desktop/Views/QtMessages.hpp"

namespace ostrel {

namespace {

using Visit = std::function<void(QAccessibleInterface&)>;

void walk(QAccessibleInterface* at, const Visit& visit) {
  if (!at || at->state().invisible) return;
  visit(*at);
  for (int i = 0; i < at->childCount(); ++i) walk(at->child(i), visit);
}

std::string nameOf(const QAccessibleInterface& at) { return at.text(QAccessible::Name).toStdString(); }

std::string roleOf(const QAccessibleInterface& at) {
  switch (at.role()) {
    case QAccessible::Button:
      return "button";
    case QAccessible::StaticText:
      return "text";
    case QAccessible::Heading:
      return "heading";
    case QAccessible::Grouping:
      return "group";
    case QAccessible::AlertMessage:
      return "alert";
    case QAccessible::EditableText:
      return "field";
    case QAccessible::List:
      return "list";
    case QAccessible::ListItem:
      return "item";
    case QAccessible::CheckBox:
      return "switch";
    case QAccessible::RadioButton:
      return "choice";
    default:
      return "other";
  }
}

void collectTabStops(QQuickItem& item, std::vector<QObject*>& found) {
  if (!item.isVisible()) return;
  if (item.activeFocusOnTab()) found.push_back(&item);
  for (auto* child : item.childItems()) collectTabStops(*child, found);
}

}  // namespace

ViewTest::ViewTest() { takeQtMessages(); }

ViewTest::~ViewTest() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(log.lines, std::vector<std::string>());
  EXPECT_EQ(takeQtMessages(), std::vector<std::string>());
}

void ViewTest::awaitWindow() {
  QObject::disconnect(counting_);
  counting_ = QObject::connect(&window(), &QQuickWindow::frameSwapped, &window(), [this] { ++frames_; });
  ASSERT_TRUE(becomes([&] { return window().isActive(); }));
  EXPECT_EQ(unspoken(), std::vector<std::string>());
  frames();
}

QQuickWindow& ViewTest::window() const {
  for (auto* window : QGuiApplication::allWindows()) {
    if (auto* quick = qobject_cast<QQuickWindow*>(window)) return *quick;
  }
  throw std::runtime_error("There is no window.");
}

void ViewTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, modifiers);
    QCoreApplication::sendEvent(&window(), &event);
  }
  QCoreApplication::processEvents();
}

void ViewTest::click(const std::string& name) { clickAt(place(name).center()); }

void ViewTest::clickAt(QPointF place) {
  sendMouse(QEvent::MouseButtonPress, place);
  sendMouse(QEvent::MouseButtonRelease, place);
  QCoreApplication::processEvents();
}

void ViewTest::turnWheel() {
  const QPointF place(window().width() / 2.0, window().height() / 2.0);
  QWheelEvent event(place, window().mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&window(), &event);
}

void ViewTest::drag() {
  QPointF place(window().width() / 2.0, window().height() / 2.0);
  quint64 time = 1000;
  sendMouse(QEvent::MouseButtonPress, place, time);
  for (int step = 0; step < 6; ++step) {
    place.ry() -= 10;
    sendMouse(QEvent::MouseMove, place, time += 8);
  }
  sendMouse(QEvent::MouseButtonRelease, place, time + 1);
}

void ViewTest::sendMouse(QEvent::Type type, QPointF place, quint64 milliseconds) {
  const auto held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  const auto changed = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, place, window().mapToGlobal(place), changed, held, Qt::NoModifier);
  event.setTimestamp(milliseconds);
  QCoreApplication::sendEvent(&window(), &event);
}

std::vector<std::string> ViewTest::unspoken() const {
  std::vector<std::string> unspoken;
  std::vector<QObject*> stops;
  collectTabStops(*window().contentItem(), stops);
  walk(QAccessible::queryAccessibleInterface(&window()), [&](const QAccessibleInterface& at) {
    std::erase(stops, at.object());
    const bool isTold = !nameOf(at).empty() && roleOf(at) != "other";
    if (!isTold && at.object() != &window()) unspoken.push_back(at.object()->metaObject()->className());
  });
  for (const auto* stop : stops) unspoken.push_back(stop->metaObject()->className());
  return unspoken;
}

void ViewTest::pressBySpeech(const std::string& name) {
  auto* at = QAccessible::queryAccessibleInterface(item(name));
  ASSERT_TRUE(at && at->actionInterface()) << name;
  at->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

std::string ViewTest::focused() const {
  auto* at = QAccessible::queryAccessibleInterface(window().activeFocusItem());
  return at ? nameOf(*at) : "";
}

std::vector<SpokenItem> ViewTest::spoken() const {
  std::vector<SpokenItem> spoken;
  walk(QAccessible::queryAccessibleInterface(&window()), [&](const QAccessibleInterface& at) {
    const auto description = at.text(QAccessible::Description).toStdString();
    spoken.push_back(
        {roleOf(at), nameOf(at), description, bool(at.state().checked), bool(at.state().focusable)});
  });
  return spoken;
}

QQuickItem* ViewTest::item(const std::string& name) const {
  QQuickItem* found = nullptr;
  walk(QAccessible::queryAccessibleInterface(&window()), [&](const QAccessibleInterface& at) {
    auto* item = qobject_cast<QQuickItem*>(at.object());
    if (!found && item && nameOf(at) == name) found = item;
  });
  return found;
}

QRectF ViewTest::place(const std::string& name) const {
  const auto* at = item(name);
  if (!at) throw std::runtime_error("Nothing is named " + name);
  return at->mapRectToScene(at->boundingRect());
}

QColor ViewTest::colorAt(int x, int y) const {
  const auto image = window().grabWindow();
  const auto scale = image.width() / window().width();
  return image.pixelColor(x * scale, y * scale);
}

int ViewTest::frames() {
  for (int before = -1; before != frames_;) {
    before = frames_;
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 40;) QCoreApplication::processEvents(QEventLoop::AllEvents, 40);
  }
  return std::exchange(frames_, 0);
}

bool ViewTest::becomes(const std::function<bool()>& condition) {
  QElapsedTimer timer;
  timer.start();
  while (!condition() && timer.elapsed() < 5000) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  }
  return condition();
}

std::vector<std::string> outside(const QQuickItem& item, double width) {
  std::vector<std::string> found;
  if (!item.isVisible()) return found;
  const auto place = item.mapRectToScene(item.boundingRect());
  const auto text = item.property("text").toString();
  const auto overflows = [&] {
    return item.property("contentWidth").toDouble() > item.width() + 1 ||
           item.y() + item.height() > item.parentItem()->height() + 1;
  };
  if (place.left() < -0.5 || place.right() > width + 0.5 || (!text.isEmpty() && overflows())) {
    found.push_back(item.metaObject()->className() + (" " + text.left(40).toStdString()));
  }
  for (const auto* child : item.childItems()) {
    auto more = outside(*child, width);
    found.insert(found.end(), more.begin(), more.end());
  }
  return found;
}

}  // namespace ostrel
