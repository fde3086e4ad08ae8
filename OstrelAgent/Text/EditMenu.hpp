#pragma once

#include <vector>

#include "Platform/MainMenu.hpp"

namespace ostrel {

/// Menu bar with the standard editing keys, for roles with a text field.
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
