#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QTimer>
#include <csignal>
#include <string>
#include <vector>

#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

/// Serves the event loop until something becomes true; false after twenty seconds.
template <class Condition>
bool spinUntil(Condition condition) {
  const QDeadlineTimer deadline(std::chrono::seconds(20));
  QTimer look;
  look.start(5);
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

/// A session bus of one test, with nobody on it but the test's own connections.
class SessionBus {
 public:
  /// Believes that it can start a program for that name, if any.
  explicit SessionBus(const std::string& startable = {});
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;
  ~SessionBus();

  const std::string& address() const { return address_; }

  /// A connection of its own, as another program has it.
  QDBusConnection connect();

  /// Takes connections, but is silent until it is resumed.
  void pause() const { daemon_.signal(SIGSTOP); }
  void resume() const { daemon_.signal(SIGCONT); }
  void kill() const { daemon_.signal(SIGKILL); }

 private:
  TemporaryFolder folder_;
  std::string address_ = "unix:path=" + folder_ / "bus";
  Process daemon_;
  std::vector<QString> names_;
};

inline QDBusMessage callOf(const QString& service, const QString& path, const QString& interface,
                           const QString& method, const QVariantList& arguments) {
  auto call = QDBusMessage::createMethodCall(service, path, interface, method);
  call.setArguments(arguments);
  return call;
}

/// Sends a call and serves the event loop until it is answered, and all that came before the answer.
QDBusMessage answerTo(const QDBusConnection& connection, const QDBusMessage& call);

}  // namespace ostrel
