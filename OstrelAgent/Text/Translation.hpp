#pragma once

#include "Platform/Bundle.hpp"
#include "Platform/Log.hpp"

namespace ostrel {

/// Installs the catalogue's texts in the user's language. When the table cannot be read, that is logged and
/// the texts are English.
void installTranslation(const Bundle& bundle, Log& log);

}  // namespace ostrel
