#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <functional>

namespace ostrel {

/// A tray's watcher on the session bus: hears of every item that registers, and counts what items signal.
class TrayWatcher final : public QDBusVirtualObject {
  Q_OBJECT

 public:
  /// `registered` gets the item's name on the bus.
  TrayWatcher(QDBusConnection connection, std::function<void(const QString&)> registered);

  int signalCount() const { return signalCount_; }

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private slots:
  void countSignal() { ++signalCount_; }

 private:
  std::function<void(const QString&)> registered_;
  int signalCount_ = 0;
};

}  // namespace ostrel
