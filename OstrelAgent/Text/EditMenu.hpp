#pragma once

#include <vector>

#include "Platform/MainMenu.hpp"

namespace ostrel {

/// The menu bar of the roles with a text field, for the standard editing keys.
inline std::vector<Menu> mainMenuForEditing() {
  return {{"Edit",
           {{"Undo", "undo:", "z"},
            {"Redo", "redo:", "Z"},
            {},
            {"Cut", "cut:", "x"},
            {"Copy", "copy:", "c"},
            {"Paste", "paste:", "v"},
            {"Select All", "selectAll:", "a"}}}};
}

}  // namespace ostrel
