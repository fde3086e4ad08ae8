#pragma once

namespace ostrel {

/// The appearance of the background behind the program's drawings (NSAppearance: aqua or dark aqua).
enum class Appearance { light, dark };

}  // namespace ostrel
