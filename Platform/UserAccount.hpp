#pragma once

#include <cstdint>
#include <string>

namespace ostrel {

/// The user in whose login session the process runs. Paths have no trailing slash.
struct UserAccount {
  std::string homeFolder;
  std::string temporaryFolder;
  std::uint32_t userIdentifier = 0;  ///< the real user id

  bool operator==(const UserAccount&) const = default;
};

}  // namespace ostrel
