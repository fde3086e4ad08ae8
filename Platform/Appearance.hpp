#pragma once

namespace ostrel {

/// The look of what lies behind the program's own drawing (NSAppearance's best match of aqua and dark aqua).
enum class Appearance { light, dark };

}  // namespace ostrel
