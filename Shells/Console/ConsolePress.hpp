#pragma once

namespace ostrel {

/// What came of a press of a numbered button.
enum class ConsolePress { done, nothingOpen, noSuchButton, disabled };

}  // namespace ostrel
