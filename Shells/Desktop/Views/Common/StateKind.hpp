#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "OstrelAgent/Panel/RowState.hpp"

/// The kinds of a state by their QML names. Properties hold them as int, since QML gets enumerators as
/// numbers.
namespace ostrel::statekind {

Q_NAMESPACE
QML_NAMED_ELEMENT(StateKind)

enum Kind { Ok, Warn, Bad, Info, Off };
Q_ENUM_NS(Kind)

Kind kindOf(RowState::Case kind);

}  // namespace ostrel::statekind
