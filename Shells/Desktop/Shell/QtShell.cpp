#include "Shells/Desktop/Shell/QtShell.hpp"

#include <QCoreApplication>
#include <utility>

namespace ostrel {

QtShell::QtShell(const DesktopServices& services, std::function<void()> activateWindow)
    : services_(services),
      activateWindow_(std::move(activateWindow)),
      queue_(services.queueDescriptor, QSocketNotifier::Read),
      signals_(services.signalDescriptor, QSocketNotifier::Read) {
  QObject::connect(&queue_, &QSocketNotifier::activated, &queue_, [this] { services_.processDueWork(); });
  QObject::connect(&signals_, &QSocketNotifier::activated, &signals_, [this] {
    signals_.setEnabled(false);
    QCoreApplication::exit(128 + services_.receivedSignal().value_or(0));
  });
}

int QtShell::run() {
  const int status = QCoreApplication::exec();
  isTerminated_ = false;
  return status;
}

// Posted, so that it also ends a loop that starts later.
void QtShell::terminate(int status) {
  if (isTerminated_.exchange(true)) return;
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [status] { QCoreApplication::exit(status); }, Qt::QueuedConnection);
}

}  // namespace ostrel
