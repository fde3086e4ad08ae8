#pragma once

#include <string_view>

#include "OstrelAgent/Panel/RowState.hpp"

namespace ostrel {

/// The sign in front of a row: "✓", "!", "✗", "·" or "–".
constexpr std::string_view stateMark(RowState::Case kind) {
  switch (kind) {
    case RowState::Case::ok:
      return "✓";
    case RowState::Case::warn:
      return "!";
    case RowState::Case::bad:
      return "✗";
    case RowState::Case::info:
      return "·";
    case RowState::Case::off:
      return "–";
  }
  return " ";
}

}  // namespace ostrel
