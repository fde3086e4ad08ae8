#include "Tests/Views/PanelTest.hpp"

#include <QAccessible>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "Platform/Desktop/Views/PanelWindow.hpp"
#include "Tests/OstrelAgent/Readings.hpp"
#include "Tests/Views/QtMessages.hpp"

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
    default:
      return "other";
  }
}

void collectTabStops(QQuickItem& item, std::vector<QObject*>& found) {
  if (!item.isVisible()) return;
  if (item.activeFocusOnTab()) found.push_back(&item);
  for (auto* child : item.childItems()) collectTabStops(*child, found);
}

PanelContent contentOf(Snapshot snapshot) {
  StatusPanelModel model;
  model.snap = std::move(snapshot);
  model.hasReading = true;
  model.panelMaxHeight = 5000;
  return panelContent(model, readings::now, readings::times(), allPanelActions());
}

}  // namespace

PanelTest::PanelTest() {
  takeQtMessages();
  PanelViewEvents events{[this](const PanelButton& button) {
                           pressed.push_back(button);
                           if (onPress) onPress();
                         },
                         [this] { ++losses; }};
  auto made = PanelWindow::make(log, std::move(events));
  if (!made) throw std::runtime_error(made.error());
  panel = std::move(*made);
  QObject::connect(&window(), &QQuickWindow::frameSwapped, &window(), [this] { ++frames_; });
}

PanelTest::~PanelTest() {
  EXPECT_EQ(panel->isShown() ? unspoken() : std::vector<std::string>(), std::vector<std::string>());
  panel.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(log.lines, std::vector<std::string>());
  EXPECT_EQ(takeQtMessages(), std::vector<std::string>());
}

void PanelTest::open(const PanelContent& content) {
  panel->open(content, anchor, look);
  ASSERT_TRUE(becomes([&] { return window().isActive(); }));
  EXPECT_EQ(unspoken(), std::vector<std::string>());
  frames();
}

QQuickWindow& PanelTest::window() const {
  for (auto* window : QGuiApplication::allWindows()) {
    if (auto* quick = qobject_cast<QQuickWindow*>(window)) return *quick;
  }
  throw std::runtime_error("There is no window.");
}

void PanelTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, modifiers);
    QCoreApplication::sendEvent(&window(), &event);
  }
  QCoreApplication::processEvents();
}

void PanelTest::click(const std::string& name) {
  const auto center = place(name).center();
  sendMouse(QEvent::MouseButtonPress, center);
  sendMouse(QEvent::MouseButtonRelease, center);
  QCoreApplication::processEvents();
}

void PanelTest::turnWheel() {
  const QPointF place(window().width() / 2.0, window().height() / 2.0);
  QWheelEvent event(place, window().mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&window(), &event);
}

void PanelTest::drag() {
  QPointF place(window().width() / 2.0, window().height() / 2.0);
  quint64 time = 1000;
  sendMouse(QEvent::MouseButtonPress, place, time);
  for (int step = 0; step < 6; ++step) {
    place.ry() -= 10;
    sendMouse(QEvent::MouseMove, place, time += 8);
  }
  sendMouse(QEvent::MouseButtonRelease, place, time + 1);
}

void PanelTest::sendMouse(QEvent::Type type, QPointF place, quint64 milliseconds) {
  const auto held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  const auto changed = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, place, window().mapToGlobal(place), changed, held, Qt::NoModifier);
  event.setTimestamp(milliseconds);
  QCoreApplication::sendEvent(&window(), &event);
}

/// What has no name or no role, and what the keyboard meets but an assistive tool does not.
std::vector<std::string> PanelTest::unspoken() const {
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

void PanelTest::pressBySpeech(const std::string& name) {
  auto* at = QAccessible::queryAccessibleInterface(item(name));
  ASSERT_TRUE(at && at->actionInterface()) << name;
  at->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

std::string PanelTest::focused() const {
  auto* at = QAccessible::queryAccessibleInterface(window().activeFocusItem());
  return at ? nameOf(*at) : "";
}

std::vector<SpokenItem> PanelTest::spoken() const {
  std::vector<SpokenItem> spoken;
  walk(QAccessible::queryAccessibleInterface(&window()), [&](const QAccessibleInterface& at) {
    const auto description = at.text(QAccessible::Description).toStdString();
    spoken.push_back(
        {roleOf(at), nameOf(at), description, bool(at.state().checked), bool(at.state().focusable)});
  });
  return spoken;
}

QQuickItem* PanelTest::item(const std::string& name) const {
  QQuickItem* found = nullptr;
  walk(QAccessible::queryAccessibleInterface(&window()), [&](const QAccessibleInterface& at) {
    auto* item = qobject_cast<QQuickItem*>(at.object());
    if (!found && item && nameOf(at) == name) found = item;
  });
  return found;
}

QRectF PanelTest::place(const std::string& name) const {
  const auto* at = item(name);
  if (!at) throw std::runtime_error("Nothing is named " + name);
  return at->mapRectToScene(at->boundingRect());
}

QColor PanelTest::colorAt(int x, int y) const {
  const auto image = window().grabWindow();
  const auto scale = image.width() / window().width();
  return image.pixelColor(x * scale, y * scale);
}

int PanelTest::frames() {
  for (int before = -1; before != frames_;) {
    before = frames_;
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 40;) QCoreApplication::processEvents(QEventLoop::AllEvents, 40);
  }
  return std::exchange(frames_, 0);
}

bool PanelTest::becomes(const std::function<bool()>& condition) {
  QElapsedTimer timer;
  timer.start();
  while (!condition() && timer.elapsed() < 5000) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
  }
  return condition();
}

PanelContent protectedContent() { return contentOf(readings::healthy()); }

PanelContent unprotectedContent() {
  auto snapshot = readings::healthy();
  snapshot.verdict = "not_protected";
  snapshot.caTrusted = false;
  snapshot.deviceCA = readings::health("broken", "red");
  snapshot.egressLock = readings::health("broken", "yellow", "EGRESS_LOCK_SWITCHED_OFF");
  snapshot.guardEcosystems[0].state = "off_by_policy";
  snapshot.update = StatusReport::Update{"eol", "3.0", "2.9"};
  return contentOf(std::move(snapshot));
}

}  // namespace ostrel
