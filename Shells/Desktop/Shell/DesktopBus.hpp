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

/// As a call's time-out: its answer may take as long as it does (DBUS_TIMEOUT_INFINITE of the bus's library).
inline constexpr int noTimeout = std::numeric_limits<int>::max();

/// Where the environment says that the session bus is.
QString sessionBusAddress();

/// Likewise the system bus.
QString systemBusAddress();

/// A call of the bus itself.
QDBusMessage busCall(const char* method);

/// A connection to a message bus that never waits for it: nothing may be called by it before the bus has let
/// the program join. Main thread.
class DesktopBus final : public QObject {
  Q_OBJECT

 public:
  /// A session bus that is missing is told in the log; another is one that a system can do without.
  DesktopBus(const QString& address, Log& log);
  explicit DesktopBus(const QString& address);
  DesktopBus(const DesktopBus&) = delete;
  DesktopBus& operator=(const DesktopBus&) = delete;
  ~DesktopBus() override;

  QDBusConnection& connection() { return connection_; }

  bool isJoined() const { return isJoined_; }

  /// There is no bus, or it has been silent for a second; in that case it may still be joined.
  bool isMissing() const { return isMissing_; }

  /// Acts when the bus is joined: at once, or once it is, unless the receiver is gone by then.
  void whenJoined(const QObject* receiver, const std::function<void()>& act);

  /// Acts once it is known whether the bus is there: at once when it is joined, else from the event loop,
  /// unless the receiver is gone by then.
  void whenKnown(const QObject* receiver, std::function<void()> act);

  /// Calls, and hands the answer, which may be an error, to `answered`, unless the receiver is gone by then.
  /// None within the time-out in ms, by default 25 s, is an error, too. Call once the bus is joined.
  void callAsync(QObject* receiver, const QDBusMessage& call,
                 std::function<void(const QDBusMessage&)> answered, int timeout = -1);

  /// Has the bus deliver the signals of that rule. Call once it is joined.
  void subscribe(const QString& rule);

  /// Has `ownerChanged` tell of that name. Call once the bus is joined.
  void watchOwner(const QString& name);

  /// Unless the bus is joined, lets the toolkit's own connection to it fail, for good: it would wait for the
  /// bus.
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

  Log* log_;  ///< none of a bus that need not be there
  QDBusConnection connection_;
  QTimer timeout_;
  bool isJoined_ = false;
  bool isMissing_ = false;
};

}  // namespace ostrel
