#include "Tests/Views/PanelTest.hpp"

#include <QAccessible>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>

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
    case QAccessible::ButtonMenu:
    case QAccessible::CheckBox:
      return "button";
    case QAccessible::StaticText:
      return "text";
    case QAccessible::Heading:
      return "heading";
    case QAccessible::Grouping:
      return "group";
    default:
      return "other";
  }
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
  PanelViewEvents events{[this](const PanelButton& button) { pressed.push_back(button); },
                         [this] { ++losses; }};
  auto made = PanelWindow::make(log, std::move(events));
  if (!made) throw std::runtime_error(made.error());
  panel = std::move(*made);
}

PanelTest::~PanelTest() {
  panel.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(log.lines, std::vector<std::string>());
  EXPECT_EQ(takeQtMessages(), std::vector<std::string>());
}

void PanelTest::open(const PanelContent& content) {
  panel->open(content, anchor, look);
  ASSERT_TRUE(becomes([&] { return window().isActive(); }));
  QObject::connect(&window(), &QQuickWindow::frameSwapped, &window(), [this] { ++frames_; });
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
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    const auto buttons = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(type, center, window().mapToGlobal(center), Qt::LeftButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&window(), &event);
  }
  QCoreApplication::processEvents();
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
    if (!nameOf(at).empty()) spoken.push_back({roleOf(at), nameOf(at), bool(at.state().checked)});
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
