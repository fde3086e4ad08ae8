#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <limits>

#include "Platform/Log.hpp"

namespace ostrel {

/// A call's time-out for waiting without limit (DBUS_TIMEOUT_INFINITE of libdbus).
inline constexpr int noTimeout = std::numeric_limits<int>::max();

/// The address of the session bus, from the environment.
QString sessionBusAddress();

/// The address of the system bus, from the environment.
QString systemBusAddress();

/// A call of a method of the bus daemon itself.
QDBusMessage busCall(const char* method);

/// A connection to a message bus that never waits for it: nothing may be called by it before the bus has let
/// the program join. Main thread.
class DesktopBus final : public QObject {
  Q_OBJECT

 public:
  /// With a log a missing bus is logged: the session bus. Without one it is not: the system bus.
  DesktopBus(const QString& address, Log& log);
  explicit DesktopBus(const QString& address);
  DesktopBus(const DesktopBus&) = delete;
  DesktopBus& operator=(const DesktopBus&) = delete;
  ~DesktopBus() override;

  QDBusConnection& connection() { return connection_; }

  bool isJoined() const { return isJoined_; }

  /// There is no bus, or it has been silent for a second; in that case it may still be joined.
  bool isMissing() const { return isMissing_; }

  /// Acts when the bus is joined: at once, or once it is, unless the receiver is destroyed before.
  void whenJoined(const QObject* receiver, const std::function<void()>& act);

  /// Acts once it is known whether the bus is there: at once when it is joined, else from the event loop,
  /// unless the receiver is destroyed before.
  void whenKnown(const QObject* receiver, std::function<void()> act);

  /// Calls, and passes the answer, which may be an error, to `answered`, unless the receiver is destroyed
  /// before. None within the time-out in ms, by default 25 s, is an error, too. Call once the bus is joined.
  void callAsync(QObject* receiver, const QDBusMessage& call,
                 std::function<void(const QDBusMessage&)> answered, int timeout = -1);

  /// Has the bus deliver the signals of that rule. Call once it is joined.
  void subscribe(const QString& rule);

  /// Has `ownerChanged` emitted for that name. Call once the bus is joined.
  void watchOwner(const QString& name);

  /// Unless the bus is joined, makes the toolkit's own connection to it fail for good, since the toolkit
  /// would block until a silent bus answers.
  void preventToolkitBusConnection() const;

  Q_SIGNAL void joined();
  Q_SIGNAL void missed();

  /// The owner is empty when the name has none any longer.
  Q_SIGNAL void ownerChanged(const QString& name, const QString& owner);

 private:
  DesktopBus(const QString& address, Log* log);
  Q_SLOT void onOwnerChanged(const QString& name, const QString& before, const QString& owner);
  void join();
  void markUnavailable(const QString& reason);

  Log* log_;  ///< null for a bus whose absence is not logged
  QDBusConnection connection_;
  QTimer timeout_;
  bool isJoined_ = false;
  bool isMissing_ = false;
};

}  // namespace ostrel
