#pragma once

#include <string>
#include <vector>

namespace ostrel {

/// Warnings and errors of the toolkit since the last call.
std::vector<std::string> takeQtMessages();

}  // namespace ostrel
