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

/// Why the daemon did not do what it was asked for.
struct ControlSocketError {
  enum class Case {
    io,                   ///< a system call failed
    requestFailed,        ///< the daemon answered that it failed
    refused,              ///< the daemon answered that it refuses, and gave a reason
    notInstalled,         ///< there is no daemon
    notAdmin,             ///< the socket admits administrators only
    malformedResponse,    ///< the answer is no JSON object
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

/// The way to the daemon: one request a connection, one JSON object each way. A copy may be used on another
/// thread. Calls block, for up to the time-out in each direction; nothing is tried twice, nothing is logged.
class ControlSocket {
 public:
  static constexpr std::string_view socketPath =
      "/Library/Application Support/ostrel-agent-endpoint.control.sock";
  static constexpr std::chrono::seconds timeout{20};
  /// The address of a Unix-domain socket of macOS takes 104 bytes with the NUL at the end.
  static constexpr std::size_t longestPath = 103;

  using Value = std::variant<bool, std::int64_t, std::string>;
  /// Members of a request beside its action; one named "action" takes the action's place.
  using Extra = std::map<std::string, Value>;

  ControlSocket(UnixSockets& sockets, const Files& files, std::string_view path = socketPath);

  /// Asks for an action; gives the answer of a daemon that did it. No error holds the enrolment token.
  [[nodiscard]] std::expected<JsonObject, ControlSocketError> send(const std::string& action,
                                                                   const Extra& extra = {}) const;

  /// Whether this Mac is enrolled, and whether its certificate waits to be trusted; false when the daemon
  /// does not tell.
  bool queryEnrolled() const;
  bool queryTrustPending() const;

  /// The error of an answer that tells no success.
  static ControlSocketError failure(const JsonObject& response);

 private:
  [[nodiscard]] std::expected<std::unique_ptr<UnixSocket>, ControlSocketError> connect() const;

  UnixSockets& sockets_;
  const Files& files_;
  std::string path_;
};

}  // namespace ostrel
