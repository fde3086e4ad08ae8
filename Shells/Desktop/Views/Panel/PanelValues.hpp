#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "Shells/Desktop/Views/Common/StateKind.hpp"

namespace ostrel {

/// A row, a chip or a line with the colour of a state.
struct RowValue {
  Q_GADGET
  QML_VALUE_TYPE(rowValue)
  Q_PROPERTY(int kind MEMBER kind)
  Q_PROPERTY(bool wantsAttention MEMBER wantsAttention)
  Q_PROPERTY(QString label MEMBER label)
  Q_PROPERTY(QString text MEMBER text)
  Q_PROPERTY(QString note MEMBER note)
  Q_PROPERTY(QString accessibleName MEMBER accessibleName)

 public:
  int kind = statekind::Ok;  ///< a `statekind::Kind`
  bool wantsAttention = false;
  QString label;
  QString text;
  QString note;
  QString accessibleName;

  bool operator==(const RowValue&) const = default;
};

/// A button; without a title there is none.
struct ButtonValue {
  Q_GADGET
  QML_VALUE_TYPE(buttonValue)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(bool isEnabled MEMBER isEnabled)

 public:
  QString title;
  bool isEnabled = true;
  PanelButton button;

  bool operator==(const ButtonValue&) const = default;
};

/// A card: something that needs the user, or an update.
struct CardValue {
  Q_GADGET
  QML_VALUE_TYPE(cardValue)
  Q_PROPERTY(int kind MEMBER kind)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString text MEMBER text)
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(QString action MEMBER action)
  Q_PROPERTY(QString accessibleName MEMBER accessibleName)
  Q_PROPERTY(QString accessibleDescription MEMBER accessibleDescription)
  Q_PROPERTY(ostrel::ButtonValue button MEMBER button)

 public:
  int kind = statekind::Ok;
  QString title;
  QString text;
  QString detail;
  QString action;
  QString accessibleName;
  QString accessibleDescription;
  ButtonValue button;

  bool operator==(const CardValue&) const = default;
};

struct HeaderValue {
  Q_GADGET
  QML_VALUE_TYPE(headerValue)
  Q_PROPERTY(int kind MEMBER kind)
  Q_PROPERTY(QString word MEMBER word)
  Q_PROPERTY(QString deadline MEMBER deadline)
  Q_PROPERTY(QString accessibleName MEMBER accessibleName)

 public:
  int kind = statekind::Ok;
  QString word;
  QString deadline;
  QString accessibleName;

  bool operator==(const HeaderValue&) const = default;
};

struct ProtectionValue {
  Q_GADGET
  QML_VALUE_TYPE(protectionValue)
  Q_PROPERTY(bool isShown MEMBER isShown)
  Q_PROPERTY(ostrel::RowValue guard MEMBER guard)
  Q_PROPERTY(QString offNote MEMBER offNote)
  Q_PROPERTY(QString noEcosystems MEMBER noEcosystems)
  Q_PROPERTY(ostrel::RowValue egressLock MEMBER egressLock)
  Q_PROPERTY(ostrel::RowValue containers MEMBER containers)

 public:
  bool isShown = false;
  RowValue guard;
  QString offNote;
  QString noEcosystems;
  RowValue egressLock;
  RowValue containers;

  bool operator==(const ProtectionValue&) const = default;
};

struct HealthValue {
  Q_GADGET
  QML_VALUE_TYPE(healthValue)
  Q_PROPERTY(bool isShown MEMBER isShown)
  Q_PROPERTY(bool startsExpanded MEMBER startsExpanded)
  Q_PROPERTY(ostrel::RowValue rollup MEMBER rollup)

 public:
  bool isShown = false;
  bool startsExpanded = false;
  RowValue rollup;

  bool operator==(const HealthValue&) const = default;
};

QString textOf(std::string_view text);
RowValue valueOf(const PanelContent::Row& row);
RowValue valueOf(const PanelContent::Ecosystem& ecosystem);
RowValue valueOf(const PanelContent::Fact& fact);
RowValue valueOf(const std::optional<RowState>& status);
ButtonValue valueOf(const std::optional<PanelButton>& button);
CardValue valueOf(const PanelContent::Update& update);
CardValue valueOf(const AttentionItem& card);
HeaderValue valueOf(const PanelContent::Header& header);
ProtectionValue valueOf(const std::optional<PanelContent::Protection>& protection);
HealthValue valueOf(const std::optional<PanelContent::Health>& health);

}  // namespace ostrel
