#pragma once

#include <chrono>
#include <cstddef>
#include <expected>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace ostrel {

/// An errno of <errno.h>.
struct ErrorNumber {
  int value = 0;

  bool operator==(const ErrorNumber&) const = default;
};

/// One Unix-domain stream socket. Each call is one of the system's, repeated by nobody; the end closes it.
class UnixSocket {
 public:
  virtual ~UnixSocket() = default;

  /// Limits every later read and write, and a connect that has to wait; what takes longer fails. A limit that
  /// cannot be set is left out.
  virtual void setTimeouts(std::chrono::milliseconds receive, std::chrono::milliseconds send) = 0;

  [[nodiscard]] virtual std::expected<void, ErrorNumber> connect(const std::string& path) = 0;

  /// Gives the number of bytes written. A peer that is gone is an error, never a signal.
  [[nodiscard]] virtual std::expected<std::size_t, ErrorNumber> write(std::string_view bytes) = 0;

  /// Gives the number of bytes read into the buffer, 0 once the peer has closed.
  [[nodiscard]] virtual std::expected<std::size_t, ErrorNumber> read(std::span<char> buffer) = 0;
};

/// Opens Unix-domain stream sockets. Any thread; calls block.
class UnixSockets {
 public:
  virtual ~UnixSockets() = default;

  [[nodiscard]] virtual std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> open() = 0;
};

}  // namespace ostrel
