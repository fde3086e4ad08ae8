#include "Shells/Desktop/Shell/DesktopWake.hpp"

#include <memory>
#include <utility>

namespace ostrel {

namespace {

const QString path = QStringLiteral("/org/freedesktop/login1");
const QString manager = QStringLiteral("org.freedesktop.login1.Manager");
const QString signal = QStringLiteral("PrepareForSleep");

}  // namespace

DesktopWake::DesktopWake(DesktopBus& sessionBus, QString address)
    : sessionBus_(sessionBus), address_(std::move(address)) {}

ScheduledWork DesktopWake::observe(std::function<void()> woke) {
  sessionBus_.whenKnown(this, [this] { join(); });
  auto follower = std::make_shared<QObject>();
  connect(this, &DesktopWake::woke, follower.get(), std::move(woke));
  return follower;
}

void DesktopWake::join() {
  if (systemBus_) return;
  systemBus_.emplace(address_);
  systemBus_->connection().connect({}, path, manager, signal, this, SLOT(prepareForSleep(bool)));
  systemBus_->whenJoined(this, [this] {
    systemBus_->subscribe(
        QStringLiteral("type='signal',sender='org.freedesktop.login1',path='%1',interface='%2',member='%3'")
            .arg(path, manager, signal));
  });
}

/// PrepareForSleep is sent before a sleep, with true, and after it, with false.
void DesktopWake::prepareForSleep(bool isGoing) {
  if (!isGoing) Q_EMIT woke();
}

}  // namespace ostrel
