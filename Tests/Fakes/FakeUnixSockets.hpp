#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/UnixSockets.hpp"

namespace ostrel {

/// Sockets whose peer answers by script: each connection takes the next list of pieces, then the peer has
/// closed. Errors and a short count that are set meet every call of their kind.
class FakeUnixSockets final : public UnixSockets {
 public:
  /// A piece of an answer, or an error in its place.
  using Piece = std::expected<std::string, ErrorNumber>;
  using Pieces = std::deque<Piece>;

  /// The calls on one socket.
  struct Connection {
    std::chrono::milliseconds receiveTimeout{0};
    std::chrono::milliseconds sendTimeout{0};
    std::vector<std::string> paths;
    std::vector<std::string> writes;
    bool isClosed = false;
  };

  std::expected<std::unique_ptr<UnixSocket>, ErrorNumber> open() override {
    if (openError) return std::unexpected(*openError);
    return std::make_unique<Socket>(*this, connections.emplace_back());
  }

  std::optional<ErrorNumber> openError;
  std::optional<ErrorNumber> connectError;
  std::optional<ErrorNumber> writeError;
  std::optional<std::size_t> writtenCount;  ///< of a write that takes only a part
  std::deque<Pieces> answers;
  std::deque<Connection> connections;  ///< every socket that was opened, in order

 private:
  class Socket final : public UnixSocket {
   public:
    Socket(FakeUnixSockets& all, Connection& connection) : all_(all), connection_(connection) {}
    ~Socket() override { connection_.isClosed = true; }

    void setTimeouts(std::chrono::milliseconds receive, std::chrono::milliseconds send) override {
      connection_.receiveTimeout = receive;
      connection_.sendTimeout = send;
    }

    std::expected<void, ErrorNumber> connect(const std::string& path) override {
      connection_.paths.push_back(path);
      if (all_.connectError) return std::unexpected(*all_.connectError);
      if (all_.answers.empty()) ADD_FAILURE() << "no answer for a connection to " << path;
      if (!all_.answers.empty()) {
        pieces_ = std::move(all_.answers.front());
        all_.answers.pop_front();
      }
      return {};
    }

    std::expected<std::size_t, ErrorNumber> write(std::string_view bytes) override {
      connection_.writes.emplace_back(bytes);
      if (all_.writeError) return std::unexpected(*all_.writeError);
      return all_.writtenCount.value_or(bytes.size());
    }

    std::expected<std::size_t, ErrorNumber> read(std::span<char> buffer) override {
      if (pieces_.empty()) return 0;
      const auto piece = pieces_.front();
      const auto part = piece ? piece->substr(0, buffer.size()) : std::string();
      pieces_.pop_front();
      if (!piece) return std::unexpected(piece.error());
      if (part.size() < piece->size()) pieces_.emplace_front(piece->substr(part.size()));
      std::ranges::copy(part, buffer.begin());
      return part.size();
    }

   private:
    FakeUnixSockets& all_;
    Connection& connection_;
    Pieces pieces_;
  };
};

}  // namespace ostrel
