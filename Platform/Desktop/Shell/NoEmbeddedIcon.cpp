#include "Platform/Desktop/Shell/EmbeddedIcon.hpp"

namespace ostrel {

std::unique_ptr<EmbeddedIcon> makeEmbeddedIcon(std::function<void(QPoint)> /*clicked*/) { return nullptr; }

}  // namespace ostrel
