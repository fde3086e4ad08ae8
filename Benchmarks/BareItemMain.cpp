// The minimal cost of a tray icon: connects to the display and the session bus, takes a name and registers it
// at the tray.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>

int main(int count, char** arguments) {
  const QGuiApplication application(count, arguments);
  const auto name = QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
  const auto bus = QDBusConnection::sessionBus();
  const auto service = QStringLiteral("org.freedesktop.DBus");
  auto request = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/DBus"), service,
                                                QStringLiteral("RequestName"));
  const auto watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
  auto registration = QDBusMessage::createMethodCall(watcher, QStringLiteral("/StatusNotifierWatcher"),
                                                     watcher, QStringLiteral("RegisterStatusNotifierItem"));
  if (!bus.send(request << name << 0U) || !bus.send(registration << name)) return 1;
  return QGuiApplication::exec();
}
