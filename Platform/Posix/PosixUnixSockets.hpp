#pragma once

#include <memory>

#include "Platform/Posix/PathMap.hpp"
#include "Platform/UnixSockets.hpp"

namespace ostrel {

/// Sockets of the system. Paths are mapped; one that is too long for an address is reached through its
/// folder.
class PosixUnixSockets final : public UnixSockets {
 public:
  explicit PosixUnixSockets(PathMap realPath);

  [[nodiscard]] std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> open() override;

  /// Interrupts all waiting calls; from now on every call fails with ECANCELED. Call it before joining queues
  /// on which calls block. Any thread.
  void endAll();

 private:
  class OpenSockets;
  class Socket;

  const PathMap realPath_;
  const std::shared_ptr<OpenSockets> open_;
};

}  // namespace ostrel
