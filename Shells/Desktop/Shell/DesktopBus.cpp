#include "Shells/Desktop/Shell/DesktopBus.hpp"

#include <QByteArray>
#include <QDBusPendingCallWatcher>
#include <chrono>
#include <memory>
#include <utility>

namespace ostrel {

namespace {

constexpr std::chrono::seconds replyTimeout{1};  // a working bus answers within milliseconds

QString nameOf(const DesktopBus* bus) {
  return QStringLiteral("ostrel-%1").arg(reinterpret_cast<quintptr>(bus));
}

}  // namespace

// libdbus searches in the same order, but only in calls that block.
QString sessionBusAddress() {
  const auto address = qgetenv("DBUS_SESSION_BUS_ADDRESS").trimmed();
  if (!address.isEmpty()) return QString::fromLocal8Bit(address);
  const auto folder = qgetenv("XDG_RUNTIME_DIR");
  if (folder.isEmpty()) return QStringLiteral("autolaunch:");
  return QStringLiteral("unix:path=%1/bus;autolaunch:")
      .arg(QString::fromLatin1(folder.toPercentEncoding("/", "~")));
}

// The paths of libdbus; usually /var/run is a link to /run.
QString systemBusAddress() {
  const auto address = qgetenv("DBUS_SYSTEM_BUS_ADDRESS").trimmed();
  if (!address.isEmpty()) return QString::fromLocal8Bit(address);
  return QStringLiteral("unix:path=/var/run/dbus/system_bus_socket;unix:path=/run/dbus/system_bus_socket");
}

QDBusMessage busCall(const char* method) {
  return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                        QStringLiteral("/org/freedesktop/DBus"),
                                        QStringLiteral("org.freedesktop.DBus"), QLatin1String(method));
}

DesktopBus::DesktopBus(const QString& address, Log& log) : DesktopBus(address, &log) {}

DesktopBus::DesktopBus(const QString& address) : DesktopBus(address, nullptr) {}

// Connected as to a peer, since connectToBus() blocks until the bus answers "Hello"; join() sends that
// explicitly.
DesktopBus::DesktopBus(const QString& address, Log* log)
    : log_(log), connection_(QDBusConnection::connectToPeer(address, nameOf(this))) {
  if (connection_.isConnected()) {
    join();
  } else {
    markUnavailable(connection_.lastError().message());
  }
}

DesktopBus::~DesktopBus() { QDBusConnection::disconnectFromPeer(connection_.name()); }

void DesktopBus::join() {
  connection_.connect({}, {}, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                      this, SLOT(onOwnerChanged(QString, QString, QString)));
  timeout_.setSingleShot(true);
  connect(&timeout_, &QTimer::timeout, this,
          [this] { markUnavailable(QStringLiteral("it does not answer")); });
  timeout_.start(replyTimeout);
  const auto enter = [this](const QDBusMessage& answer) {
    if (answer.type() == QDBusMessage::ErrorMessage) return markUnavailable(answer.errorMessage());
    timeout_.stop();
    isJoined_ = true;
    isMissing_ = false;
    Q_EMIT joined();
  };
  callAsync(this, busCall("Hello"), enter, noTimeout);
}

void DesktopBus::markUnavailable(const QString& reason) {
  timeout_.stop();
  if (std::exchange(isMissing_, true)) return;
  if (log_ != nullptr) log_->line("ostrel: the session bus cannot be reached: " + reason.toStdString());
  Q_EMIT missed();
}

void DesktopBus::whenJoined(const QObject* receiver, const std::function<void()>& act) {
  if (isJoined_) return act();
  connect(this, &DesktopBus::joined, receiver, act);
}

void DesktopBus::whenKnown(const QObject* receiver, std::function<void()> act) {
  if (isJoined_) return act();
  if (isMissing_) return QTimer::singleShot(0, receiver, std::move(act));
  const auto waiting = std::make_shared<std::function<void()>>(std::move(act));
  const auto once = [waiting] {
    if (const auto first = std::exchange(*waiting, nullptr)) first();
  };
  connect(this, &DesktopBus::joined, receiver, once);
  connect(this, &DesktopBus::missed, receiver, once);
}

void DesktopBus::callAsync(QObject* receiver, const QDBusMessage& call,
                           std::function<void(const QDBusMessage&)> answered, int timeout) {
  auto* reply = new QDBusPendingCallWatcher(connection_.asyncCall(call, timeout), receiver);
  connect(reply, &QDBusPendingCallWatcher::finished, receiver, [reply, answered = std::move(answered)] {
    reply->deleteLater();
    answered(reply->reply());
  });
}

void DesktopBus::subscribe(const QString& rule) { connection_.send(busCall("AddMatch") << rule); }

void DesktopBus::watchOwner(const QString& name) {
  subscribe(QStringLiteral("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='%1'")
                .arg(name));
}

void DesktopBus::preventToolkitBusConnection() const {
  // The toolkit uses a connection of this name, if there is one, as its session bus.
  if (!isJoined_)
    QDBusConnection::connectToBus(QStringLiteral("none:"), QStringLiteral("qt_default_session_bus"));
}

void DesktopBus::onOwnerChanged(const QString& name, const QString& /*before*/, const QString& owner) {
  Q_EMIT ownerChanged(name, owner);
}

}  // namespace ostrel
