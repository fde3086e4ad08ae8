#pragma once

#include <QObject>
#include <QString>
#include <optional>

#include "Platform/SystemWake.hpp"
#include "Shells/Desktop/Shell/DesktopBus.hpp"

namespace ostrel {

/// Wakes as the login manager signals them (org.freedesktop.login1). The system bus is joined with the first
/// observer, and after the session bus, which the icon needs first. Without that bus there are no signals.
class DesktopWake final : public QObject, public SystemWake {
  Q_OBJECT

 public:
  DesktopWake(DesktopBus& sessionBus, QString address);

  [[nodiscard]] ScheduledWork observe(std::function<void()> woke) override;

  Q_SIGNAL void woke();

 private:
  Q_SLOT void prepareForSleep(bool isGoing);
  void join();

  DesktopBus& sessionBus_;
  QString address_;
  std::optional<DesktopBus> systemBus_;
};

}  // namespace ostrel
