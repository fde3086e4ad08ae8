#pragma once

#include <string>

namespace ostrel {

/// Has two files of one folder change names in one step. 0, or the errno of what failed: EINVAL where the
/// file system cannot.
int exchangeFiles(const std::string& one, const std::string& other);

}  // namespace ostrel
