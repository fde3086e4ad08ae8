#include "Shells/Desktop/Views/Common/StateKind.hpp"

namespace ostrel::statekind {

Kind kindOf(RowState::Case kind) {
  switch (kind) {
    case RowState::Case::ok:
      return Ok;
    case RowState::Case::warn:
      return Warn;
    case RowState::Case::bad:
      return Bad;
    case RowState::Case::info:
      return Info;
    case RowState::Case::off:
      return Off;
  }
  return Info;
}

}  // namespace ostrel::statekind
