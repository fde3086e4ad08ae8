#pragma once

#include <QDBusVirtualObject>
#include <QPoint>
#include <functional>

#include "Platform/Log.hpp"
#include "Shells/Desktop/Shell/DBusTypes.hpp"
#include "Shells/Desktop/Shell/DesktopBus.hpp"

namespace ostrel {

/// An icon in the desktop's tray (org.kde.StatusNotifierItem). Registers with the tray's watcher once the bus
/// is joined, and again with every watcher that appears later; never waits for one.
class StatusNotifierItem final : public QDBusVirtualObject {
 public:
  static constexpr const char* path = "/StatusNotifierItem";

  /// A click calls `activated` with its place in the screens' pixels; (0, 0) when the host does not know it.
  StatusNotifierItem(DesktopBus& bus, const QString& menuPath, Log& log,
                     std::function<void(QPoint)> activated);
  StatusNotifierItem(const StatusNotifierItem&) = delete;
  StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;
  ~StatusNotifierItem() override;

  /// Sets changed pictures, which are drawn when a host asks for them, and notifies the host.
  void setPixmaps(std::function<QList<DBusPixmap>()> pixmaps);

  /// Notify the host, if the text has changed.
  void setTitle(const QString& title);
  void setToolTip(const QString& text);

  /// Puts the item into the tray. Call once everything is set.
  void show();

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  void requestNameAndRegister();
  void registerAtWatcher();
  void emitChange(const char* signal);
  QVariantMap properties() const;

  DesktopBus& bus_;
  QString menuPath_;
  Log& log_;
  std::function<void(QPoint)> activated_;
  std::function<QList<DBusPixmap>()> pixmaps_;
  QString title_;
  QString toolTip_;
  bool isShown_ = false;
  bool hasLoggedMissingTray_ = false;
};

}  // namespace ostrel
