#pragma once

#include <QDBusVirtualObject>
#include <functional>
#include <optional>
#include <vector>

#include "OstrelAgent/Panel/StatusPanelActions.hpp"
#include "Shells/Desktop/Shell/DBusTypes.hpp"
#include "Shells/Desktop/Shell/DesktopBus.hpp"

namespace ostrel {

/// A flat menu on the session bus (com.canonical.dbusmenu), for the host of a status notifier item to show.
class StatusItemMenu final : public QDBusVirtualObject {
 public:
  static constexpr const char* path = "/StatusItemMenu";

  StatusItemMenu(DesktopBus& bus, std::function<void(const PanelButton&)> pressed);
  StatusItemMenu(const StatusItemMenu&) = delete;
  StatusItemMenu& operator=(const StatusItemMenu&) = delete;
  ~StatusItemMenu() override;

  void setButtons(std::vector<PanelButton> buttons);

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QVariantMap propertiesOf(int id) const;
  DBusMenuItem itemOf(int id, int depth) const;
  bool hasItem(int id) const;
  void handleEvent(int id, const QString& name);
  std::optional<QVariantList> answer(const QString& method, const QVariantList& arguments);

  DesktopBus& bus_;
  std::function<void(const PanelButton&)> pressed_;
  std::vector<PanelButton> buttons_;
  uint revision_ = 1;
};

}  // namespace ostrel
