#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "OstrelAgent/Panel/RowState.hpp"

/// The kinds of a state by the names that QML has for them. Properties hold their numbers: the toolkit gives
/// values of an enumeration to QML only as such.
namespace ostrel::statekind {

Q_NAMESPACE
QML_NAMED_ELEMENT(StateKind)

enum Kind { Ok, Warn, Bad, Info, Off };
Q_ENUM_NS(Kind)

Kind kindOf(RowState::Case kind);

}  // namespace ostrel::statekind
