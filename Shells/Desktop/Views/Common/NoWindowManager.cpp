#include "Shells/Desktop/Views/Common/WindowManager.hpp"

namespace ostrel {

void keepOutOfTaskbar(QWindow& /*window*/) {}

bool blendsWindows() { return true; }

}  // namespace ostrel
