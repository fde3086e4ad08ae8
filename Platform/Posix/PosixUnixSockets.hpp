#pragma once

#include <memory>

#include "Platform/Posix/PathMap.hpp"
#include "Platform/UnixSockets.hpp"

namespace ostrel {

/// Sockets of the system. A path is mapped; one that is too long for an address is reached through its
/// folder.
class PosixUnixSockets final : public UnixSockets {
 public:
  explicit PosixUnixSockets(PathMap realPath);

  [[nodiscard]] std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> open() override;

  /// Ends what any socket waits for, and opens no more: from now on all fails with ECANCELED. Call it before
  /// the queues on which calls block are joined. Any thread.
  void endAll();

 private:
  class OpenSockets;
  class Socket;

  const PathMap realPath_;
  const std::shared_ptr<OpenSockets> open_;
};

}  // namespace ostrel
