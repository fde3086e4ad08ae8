#pragma once

#include <string>

#include "Platform/Alerts.hpp"

namespace ostrel {

/// An alert as text in lines of at most 80 columns where words allow, with its buttons numbered from 1.
std::string alertText(const Alert& alert);

}  // namespace ostrel
