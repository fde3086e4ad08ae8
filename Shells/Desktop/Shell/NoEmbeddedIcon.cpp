#include "Shells/Desktop/Shell/EmbeddedIcon.hpp"

namespace ostrel {

std::unique_ptr<EmbeddedIcon> makeEmbeddedIcon(EmbeddedIcon::Events /*events*/) { return nullptr; }

}  // namespace ostrel
