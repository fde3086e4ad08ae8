#pragma once

#include "Platform/Posix/PathMap.hpp"
#include "Platform/UnixSockets.hpp"

namespace ostrel {

/// Sockets of the system. A path is mapped; one that is too long for an address is reached through its
/// folder.
class PosixUnixSockets final : public UnixSockets {
 public:
  explicit PosixUnixSockets(PathMap realPath);

  std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> open() override;

 private:
  const PathMap realPath_;
};

}  // namespace ostrel
