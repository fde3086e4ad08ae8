#include "Tests/Shells/Desktop/Shell/TrayWatcher.hpp"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <utility>

namespace ostrel {

namespace {

const QString name = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString path = QStringLiteral("/StatusNotifierWatcher");

}  // namespace

TrayWatcher::TrayWatcher(QDBusConnection connection) : connection_(std::move(connection)) {
  connection_.registerVirtualObject(path, this);
  connection_.interface()->registerService(name, QDBusConnectionInterface::QueueService);
}

TrayWatcher::~TrayWatcher() {
  connection_.unregisterObject(path);
  connection_.unregisterService(name);
}

QString TrayWatcher::introspect(const QString& /*path*/) const { return {}; }

bool TrayWatcher::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.interface() == QLatin1String("org.freedesktop.DBus.Properties")) {
    return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
  }
  if (message.member() != QLatin1String("RegisterStatusNotifierItem")) return false;
  items.append(message.arguments().value(0).toString());
  if (isAnswering) connection.send(message.createReply());
  return true;
}

}  // namespace ostrel
