// The minimal cost of a first window: loads the drawing library and draws one rectangle without a graphics
// card. Loaded by ostrel-desktop-bench.

#include <QByteArray>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

extern "C" void openBareWindow() {
  QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  static QQmlApplicationEngine engine;
  engine.loadData(
      QByteArrayLiteral("import QtQuick\n"
                        "Window { visible: true; width: 340; height: 480; Rectangle { anchors.fill: parent; "
                        "color: \"teal\" } }"));
}
