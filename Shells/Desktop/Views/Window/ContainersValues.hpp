#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>
#include <QStringList>
#include <QVariant>

#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "Shells/Desktop/Views/Common/ValueList.hpp"
#include "Shells/Desktop/Views/Window/PageLineValues.hpp"

namespace ostrel {

/// A short word about a runtime.
struct ChipValue {
  Q_GADGET
  QML_VALUE_TYPE(chipValue)
  Q_PROPERTY(QString text MEMBER text)
  Q_PROPERTY(bool isWarning MEMBER isWarning)

 public:
  QString text;
  bool isWarning = false;

  bool operator==(const ChipValue&) const = default;
};

/// A runtime in its section.
struct RuntimeValue {
  Q_GADGET
  QML_VALUE_TYPE(runtimeValue)
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString caption MEMBER caption)
  Q_PROPERTY(bool isFirst MEMBER isFirst)
  Q_PROPERTY(bool isLast MEMBER isLast)
  Q_PROPERTY(bool isDim MEMBER isDim)
  Q_PROPERTY(bool isSelected MEMBER isSelected)
  Q_PROPERTY(int kind MEMBER kind)
  Q_PROPERTY(QVariantList chips MEMBER chips)
  Q_PROPERTY(QString accessibleName MEMBER accessibleName)

 public:
  QString name;
  QString caption;       ///< of the section, with its first runtime
  bool isFirst = false;  ///< of its section
  bool isLast = false;
  bool isDim = false;  ///< nothing is to be said about it
  bool isSelected = false;
  int kind = statekind::Info;
  QVariantList chips;  ///< of `ChipValue`
  QString accessibleName;

  bool operator==(const RuntimeValue&) const = default;
};

/// A button that copies; without a title there is none.
struct CopyButtonValue {
  Q_GADGET
  QML_VALUE_TYPE(copyButtonValue)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString copied MEMBER copied)

 public:
  QString title;
  QString copied;
  ContainersCopy copies = ContainersCopy::snippet;

  bool operator==(const CopyButtonValue&) const = default;
};

/// A text to copy.
struct CommandValue {
  Q_GADGET
  QML_VALUE_TYPE(commandValue)
  Q_PROPERTY(QString shown MEMBER shown)
  Q_PROPERTY(ostrel::CopyButtonValue button MEMBER button)

 public:
  QString shown;
  CopyButtonValue button;

  bool operator==(const CommandValue&) const = default;
};

/// The selected runtime; without a name there is none.
struct RuntimeDetailValue {
  Q_GADGET
  QML_VALUE_TYPE(runtimeDetailValue)
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QVariantList chips MEMBER chips)
  Q_PROPERTY(QString state MEMBER state)
  Q_PROPERTY(QString blocked MEMBER blocked)
  Q_PROPERTY(ostrel::CommandValue setup MEMBER setup)
  Q_PROPERTY(ostrel::CommandValue guest MEMBER guest)
  Q_PROPERTY(ostrel::PageButtonValue reveal MEMBER reveal)
  Q_PROPERTY(ostrel::CopyButtonValue copyPath MEMBER copyPath)
  Q_PROPERTY(QString notifyLabel MEMBER notifyLabel)
  Q_PROPERTY(bool isNotifyOn MEMBER isNotifyOn)
  Q_PROPERTY(QString authorization MEMBER authorization)
  Q_PROPERTY(ostrel::PageButtonValue authorizationButton MEMBER authorizationButton)

 public:
  QString name;
  QVariantList chips;
  QString state;
  QString blocked;
  CommandValue setup;
  CommandValue guest;
  PageButtonValue reveal;
  CopyButtonValue copyPath;
  QString notifyLabel;
  bool isNotifyOn = false;
  QString authorization;
  PageButtonValue authorizationButton;

  bool operator==(const RuntimeDetailValue&) const = default;
};

/// How containers are started.
struct InsideValue {
  Q_GADGET
  QML_VALUE_TYPE(insideValue)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString lede MEMBER lede)
  Q_PROPERTY(QStringList choices MEMBER choices)
  Q_PROPERTY(int chosen MEMBER chosen)
  Q_PROPERTY(ostrel::CommandValue snippet MEMBER snippet)
  Q_PROPERTY(QString covers MEMBER covers)

 public:
  QString title;
  QString lede;
  QStringList choices;
  int chosen = 0;
  CommandValue snippet;
  QString covers;

  bool operator==(const InsideValue&) const = default;
};

std::vector<ValueList::Entry> runtimes(const std::vector<ContainersPageContent::Section>& sections);
RuntimeDetailValue detailOf(const ContainersPageContent& content);
InsideValue valueOf(const ContainersPageContent::Inside& inside);

}  // namespace ostrel
