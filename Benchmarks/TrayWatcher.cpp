#include "Benchmarks/TrayWatcher.hpp"

#include <stdexcept>
#include <utility>

namespace ostrel {

namespace {

constexpr const char* watcher = "org.kde.StatusNotifierWatcher";
constexpr const char* item = "org.kde.StatusNotifierItem";

}  // namespace

TrayWatcher::TrayWatcher(QDBusConnection connection, std::function<void(const QString&)> registered)
    : registered_(std::move(registered)) {
  connection.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), this);
  for (const char* name : {"NewIcon", "NewTitle", "NewToolTip", "NewStatus"}) {
    connection.connect({}, {}, QLatin1String(item), QLatin1String(name), this, SLOT(countSignal()));
  }
  if (!connection.registerService(QLatin1String(watcher))) {
    throw std::runtime_error("the session bus has a tray already, or is not there");
  }
}

QString TrayWatcher::introspect(const QString& /*path*/) const { return {}; }

bool TrayWatcher::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.member() != QLatin1String("RegisterStatusNotifierItem")) return false;
  connection.send(message.createReply());
  registered_(message.arguments().value(0).toString());
  return true;
}

}  // namespace ostrel
