#pragma once

#include "Platform/Bundle.hpp"
#include "Platform/Log.hpp"

namespace ostrel {

/// Installs the catalogue's texts in the person's language. A table that cannot be read is logged and left
/// out: the texts are English then.
void installTranslation(const Bundle& bundle, Log& log);

}  // namespace ostrel
