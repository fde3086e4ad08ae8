#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "OstrelAgent/Text/Json.hpp"
#include "Platform/Files.hpp"
#include "Platform/UnixSockets.hpp"

namespace ostrel {

/// Why a request to the daemon failed.
struct ControlSocketError {
  enum class Case {
    io,                   ///< a system call failed
    requestFailed,        ///< the daemon reported a failure
    refused,              ///< the daemon refused, with a reason
    notInstalled,         ///< there is no daemon
    notAdmin,             ///< the socket admits administrators only
    malformedResponse,    ///< the response is not a JSON object
    requestNotSerialised  ///< a text of the request is not UTF-8; nothing was sent
  };

  Case kind = Case::io;
  std::string detail = {};   ///< of `io`: the call and its errno
  std::string message = {};  ///< of `requestFailed` and `refused`: the daemon's sentence
  std::string reason = {};   ///< of `refused`: a code for programs

  /// The sentence to show; `operation` completes "Only an administrator account can ...".
  std::string userMessage(std::string_view operation) const;

  bool operator==(const ControlSocketError&) const = default;
};

/// Client of the daemon's control socket: one request per connection, one JSON object each way. A copy may be
/// used on another thread. Calls block for at most the time-out in each direction; no retries, no logging.
class ControlSocket {
 public:
  static constexpr std::string_view socketPath =
      "/Library/Application Support/ostrel-agent-endpoint.control.sock";
  static constexpr std::chrono::seconds timeout{20};
  /// Unix-domain socket addresses hold 104 bytes on macOS, including the NUL.
  static constexpr std::size_t maxPathLength = 103;

  using Value = std::variant<bool, std::int64_t, std::string>;
  /// Further members of a request; one named "action" overrides the action.
  using Extra = std::map<std::string, Value>;

  ControlSocket(UnixSockets& sockets, const Files& files, std::string_view path = socketPath);

  /// Requests an action and returns the daemon's response. No error contains the enrolment token.
  [[nodiscard]] std::expected<JsonObject, ControlSocketError> send(const std::string& action,
                                                                   const Extra& extra = {}) const;

  /// Whether this Mac is enrolled, and whether its certificate still has to be trusted; false when the daemon
  /// does not say.
  bool queryEnrolled() const;
  bool queryTrustPending() const;

  /// The error of a response that reports no success.
  static ControlSocketError failure(const JsonObject& response);

 private:
  [[nodiscard]] std::expected<std::unique_ptr<UnixSocket>, ControlSocketError> connect() const;

  UnixSockets& sockets_;
  const Files& files_;
  std::string path_;
};

}  // namespace ostrel
