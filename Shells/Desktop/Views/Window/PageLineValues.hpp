#pragma once

#include <QtQml/qqmlregistration.h>
#include <QHash>
#include <QString>
#include <QVariant>

#include <vector>

#include "OstrelAgent/Window/AgentWindowContent.hpp"
#include "Shells/Desktop/Views/Common/ValueList.hpp"
#include "Shells/Desktop/Views/Panel/PanelValues.hpp"

/// The kinds of a page's lines by their QML names.
namespace ostrel::linetype {

Q_NAMESPACE
QML_NAMED_ELEMENT(LineType)

enum Type {
  State,    ///< mark, label, text
  Fact,     ///< label, text and what can be done about it
  Card,     ///< mark, label, text, button; detail, action and facts below
  Switch,   ///< label, switch
  Caption,  ///< above a list
  Note,     ///< small text below a list
  Lede,     ///< what a page is for
  Buttons,
  Notice,  ///< how something ended
};
Q_ENUM_NS(Type)

}  // namespace ostrel::linetype

namespace ostrel {

/// A button that belongs to the window's pages alone; without a title there is none.
struct PageButtonValue {
  Q_GADGET
  QML_VALUE_TYPE(pageButtonValue)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(bool isPrimary MEMBER isPrimary)

 public:
  QString title;
  bool isPrimary = false;
  PageAction action = PageAction::revealBundle;

  bool operator==(const PageButtonValue&) const = default;
};

/// One line of a page; its type says which members it uses.
struct PageLineValue {
  Q_GADGET
  QML_VALUE_TYPE(pageLineValue)
  Q_PROPERTY(int type MEMBER type)
  Q_PROPERTY(QString id MEMBER id)
  Q_PROPERTY(double gap MEMBER gap)
  Q_PROPERTY(bool isListed MEMBER isListed)
  Q_PROPERTY(bool isFirst MEMBER isFirst)
  Q_PROPERTY(bool isLast MEMBER isLast)
  Q_PROPERTY(int kind MEMBER kind)
  Q_PROPERTY(bool isDim MEMBER isDim)
  Q_PROPERTY(bool isCode MEMBER isCode)
  Q_PROPERTY(QString label MEMBER label)
  Q_PROPERTY(QString text MEMBER text)
  Q_PROPERTY(QString addition MEMBER addition)
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(QString action MEMBER action)
  Q_PROPERTY(QVariantList facts MEMBER facts)
  Q_PROPERTY(bool isFoldable MEMBER isFoldable)
  Q_PROPERTY(bool isOpen MEMBER isOpen)
  Q_PROPERTY(bool isOn MEMBER isOn)
  Q_PROPERTY(bool isEnabled MEMBER isEnabled)
  Q_PROPERTY(ostrel::ButtonValue button MEMBER button)
  Q_PROPERTY(bool isPrimary MEMBER isPrimary)
  Q_PROPERTY(QVariantList buttons MEMBER buttons)
  Q_PROPERTY(QString accessibleName MEMBER accessibleName)

 public:
  int type = linetype::Fact;
  QString id;             ///< of a card or a switch
  double gap = 0;         ///< above it, in points
  bool isListed = false;  ///< on the ground of a list, from its first line to its last
  bool isFirst = true;
  bool isLast = true;
  int kind = statekind::Info;  ///< a `statekind::Kind`
  bool isDim = false;          ///< nothing is known of what the label names
  bool isCode = false;         ///< the text is a code
  QString label;
  QString text;
  QString addition;  ///< follows the text, in the usual colour
  QString detail;
  QString action;
  QVariantList facts;       ///< of `FactValue`
  bool isFoldable = false;  ///< what is below the title shows only while it is open
  bool isOpen = true;
  bool isOn = false;
  bool isEnabled = true;  ///< of a switch
  ButtonValue button;
  bool isPrimary = false;                ///< of the button
  std::optional<PageAction> pageAction;  ///< what the button does in place of its own action
  QVariantList buttons;                  ///< of `ButtonValue`
  QString accessibleName;

  bool operator==(const PageLineValue&) const = default;
};

/// A fact below a card.
struct FactValue {
  Q_GADGET
  QML_VALUE_TYPE(factValue)
  Q_PROPERTY(QString label MEMBER label)
  Q_PROPERTY(QString text MEMBER text)
  Q_PROPERTY(bool isCode MEMBER isCode)

 public:
  QString label;
  QString text;
  bool isCode = false;

  bool operator==(const FactValue&) const = default;
};

PageButtonValue valueOf(const std::optional<PageButton>& button, bool isPrimary);

/// Whether the user has opened or closed a card, by its id.
using FoldedCards = QHash<QString, bool>;

/// The lines of the shown page; none for the containers page.
std::vector<ValueList::Entry> pageLines(const AgentWindowContent& content, const FoldedCards& isOpened);

}  // namespace ostrel
