#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>

namespace ostrel {

/// The desktop's side of the tray: the watcher with which status notifier items register.
class TrayWatcher final : public QDBusVirtualObject {
 public:
  /// Takes its name, or waits in the line for it behind another watcher.
  explicit TrayWatcher(QDBusConnection connection);
  TrayWatcher(const TrayWatcher&) = delete;
  TrayWatcher& operator=(const TrayWatcher&) = delete;
  ~TrayWatcher() override;

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  bool isAnswering = true;
  QStringList items;  ///< names that were registered, in order

 private:
  QDBusConnection connection_;
};

}  // namespace ostrel
