#include "Tests/Shells/Desktop/Shell/NotificationDaemon.hpp"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <utility>

namespace ostrel {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");

}  // namespace

NotificationDaemon::NotificationDaemon(QDBusConnection connection) : connection_(std::move(connection)) {
  connection_.registerVirtualObject(path, this);
  connection_.registerService(service);
}

NotificationDaemon::~NotificationDaemon() {
  connection_.unregisterObject(path);
  connection_.unregisterService(service);
}

void NotificationDaemon::press(uint number, const QString& key) {
  sendSignal("ActionInvoked", {number, key});
}

void NotificationDaemon::close(uint number, uint reason) {
  sendSignal("NotificationClosed", {number, reason});
}

void NotificationDaemon::sendSignal(const char* signal, const QVariantList& values) {
  auto message = QDBusMessage::createSignal(path, service, QLatin1String(signal));
  message.setArguments(values);
  connection_.send(message);
}

void NotificationDaemon::answerLate() {
  for (const auto& message : std::exchange(late_, {})) {
    connection_.send(message.createReply(QVariant(++lastNumber_)));
  }
}

QString NotificationDaemon::introspect(const QString& /*path*/) const { return {}; }

QVariant NotificationDaemon::take(const Notification& notification) {
  notified.append(notification);
  return notification.replaced != 0 && canReplace ? notification.replaced : ++lastNumber_;
}

bool NotificationDaemon::answer(const QDBusMessage& message, Answer how, const QVariant& value) {
  switch (how) {
    case Answer::asAsked:
      return connection_.send(message.createReply(value));
    case Answer::refusal:
      return connection_.send(
          message.createErrorReply(QStringLiteral("org.example.Error.Full"), QStringLiteral("no room")));
    case Answer::nonsense:
      return connection_.send(message.createReply(QVariant(QStringLiteral("shown"))));
    case Answer::none:
      late_.append(message);
  }
  return true;
}

bool NotificationDaemon::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) {
  const auto values = message.arguments();
  if (message.member() == QLatin1String("GetCapabilities"))
    return answer(message, answerOfCapabilities, capabilities);
  if (message.member() == QLatin1String("CloseNotification")) {
    closings.append(values.value(0).toUInt());
    return connection_.send(message.createReply());
  }
  if (message.member() != QLatin1String("Notify") || message.signature() != QLatin1String("susssasa{sv}i"))
    return false;
  const Notification notification{values[0].toString(),     values[1].toUInt(),
                                  values[3].toString(),     values[4].toString(),
                                  values[5].toStringList(), qdbus_cast<QVariantMap>(values[6])};
  if (answerOfNotify == Answer::asAsked) return answer(message, Answer::asAsked, take(notification));
  notified.append(notification);
  return answer(message, answerOfNotify, {});
}

}  // namespace ostrel
