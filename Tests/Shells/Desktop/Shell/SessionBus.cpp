#include "Tests/Shells/Desktop/Shell/SessionBus.hpp"

#include <gtest/gtest.h>

#include <QDBusError>
#include <QDBusPendingCall>

namespace ostrel {

namespace {

/// What is installed on the machine stays out of the test.
std::string writeConfiguration(const TemporaryFolder& folder, const std::string& address,
                               const std::string& startable) {
  if (!startable.empty())
    folder.write("services/test.service", "[D-BUS Service]\nName=" + startable + "\nExec=/bin/false\n");
  return folder.write("bus.conf",
                      "<busconfig><type>session</type><listen>" + address + "</listen><servicedir>" +
                          (folder / "services") +
                          "</servicedir><auth>EXTERNAL</auth><policy context=\"default\">"
                          "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/><allow own=\"*\"/>"
                          "</policy></busconfig>");
}

}  // namespace

SessionBus::SessionBus(const std::string& startable)
    : daemon_({DBUS_DAEMON, "--config-file=" + writeConfiguration(folder_, address_, startable), "--nofork",
               "--print-address"},
              {}) {
  daemon_.awaitOutput("\n");
}

SessionBus::~SessionBus() {
  for (const auto& name : names_) QDBusConnection::disconnectFromBus(name);
}

QDBusConnection SessionBus::connect() {
  static int number = 0;
  names_.push_back(QStringLiteral("test-%1").arg(++number));
  auto connection = QDBusConnection::connectToBus(QString::fromStdString(address_), names_.back());
  if (!connection.isConnected()) ADD_FAILURE() << connection.lastError().message().toStdString();
  return connection;
}

QDBusMessage answerTo(const QDBusConnection& connection, const QDBusMessage& call) {
  const auto pending = connection.asyncCall(call);
  if (!spinUntil([&] { return pending.isFinished(); })) ADD_FAILURE() << "no answer to a call";
  // Signals that came before the answer wait in the loop.
  QCoreApplication::processEvents();
  return pending.reply();
}

}  // namespace ostrel
