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

/// A Unix-domain stream socket. Each call is one system call without retries; the destructor closes it.
class UnixSocket {
 public:
  virtual ~UnixSocket() = default;

  /// Limits the time of every later read, write and waiting connect; a longer one fails. A limit that cannot
  /// be set is ignored.
  virtual void setTimeouts(std::chrono::milliseconds receive, std::chrono::milliseconds send) = 0;

  [[nodiscard]] virtual std::expected<void, ErrorNumber> connect(const std::string& path) = 0;

  /// Returns the number of bytes written. A closed peer is an error, never a signal.
  [[nodiscard]] virtual std::expected<std::size_t, ErrorNumber> write(std::string_view bytes) = 0;

  /// Returns the number of bytes read into the buffer, 0 once the peer has closed.
  [[nodiscard]] virtual std::expected<std::size_t, ErrorNumber> read(std::span<char> buffer) = 0;
};

/// Opens Unix-domain stream sockets. Any thread; calls block.
class UnixSockets {
 public:
  virtual ~UnixSockets() = default;

  [[nodiscard]] virtual std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> open() = 0;
};

}  // namespace ostrel
