#pragma once

#include <cstdint>
#include <string>

namespace ostrel {

/// The person whose Mac session the process belongs to. Paths have no slash at the end.
struct UserAccount {
  std::string homeFolder;
  std::string temporaryFolder;
  std::uint32_t userIdentifier = 0;  ///< the real user id

  bool operator==(const UserAccount&) const = default;
};

}  // namespace ostrel
