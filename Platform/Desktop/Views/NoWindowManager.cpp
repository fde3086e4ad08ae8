#include "Platform/Desktop/Views/Taskbar.hpp"

namespace ostrel {

void keepOutOfTaskbar(QWindow& /*window*/) {}

}  // namespace ostrel
