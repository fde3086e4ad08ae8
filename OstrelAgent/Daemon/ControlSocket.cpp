#include "OstrelAgent/Daemon/ControlSocket.hpp"

#include <array>
#include <cerrno>
#include <nlohmann/json.hpp>
#include <utility>

#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel {

namespace {

using Case = ControlSocketError::Case;
using Bytes = std::expected<std::string, ControlSocketError>;

// Not translated, like the daemon's own messages, which they take the place of.
constexpr std::string_view refusedSilently =
    "The Ostrel Agent background service refused the request without saying why.";
constexpr std::string_view notSerialised = "The request contains characters that can't be sent.";

std::unexpected<ControlSocketError> failed(Case kind) { return std::unexpected(ControlSocketError{kind}); }

std::unexpected<ControlSocketError> ioFailed(std::string detail) {
  return std::unexpected(ControlSocketError{.kind = Case::io, .detail = std::move(detail)});
}

std::string withErrno(const char* call, ErrorNumber error) { return call + std::to_string(error.value); }

std::unexpected<ControlSocketError> connectFailed(ErrorNumber error) {
  if (error.value == EACCES || error.value == EPERM) return failed(Case::notAdmin);
  if (error.value == ENOENT || error.value == ECONNREFUSED) return failed(Case::notInstalled);
  return ioFailed(withErrno("connect() errno ", error));
}

/// The request as one line. The JSON library's error text is dropped, because it quotes the request.
[[nodiscard]] Bytes serialised(const std::string& action, const ControlSocket::Extra& extra) try {
  nlohmann::json request = {{"action", action}};
  for (const auto& [name, value] : extra) {
    std::visit([&, &key = name](const auto& plain) { request[key] = plain; }, value);
  }
  return request.dump() + '\n';
} catch (const nlohmann::json::exception&) {
  return failed(Case::requestNotSerialised);
}

/// Writes in a single call: a request is small, so a partial write means a faulty peer.
[[nodiscard]] std::expected<void, ControlSocketError> write(UnixSocket& socket, std::string_view request) {
  const auto written = socket.write(request);
  if (written == request.size()) return {};
  const auto error = written ? ErrorNumber() : written.error();
  return ioFailed(withErrno("write() incomplete (errno ", error) + ")");
}

/// Reads until a line feed or until the peer closes.
[[nodiscard]] Bytes readAnswer(UnixSocket& socket) {
  std::array<char, 4096> buffer;
  std::string answer;
  while (!answer.ends_with('\n')) {
    const auto count = socket.read(buffer);
    if (!count) return ioFailed(withErrno("read() errno ", count.error()));
    if (*count == 0) break;
    answer.append(buffer.data(), *count);
  }
  return answer;
}

[[nodiscard]] Bytes exchanged(UnixSocket& socket, const std::string& action,
                              const ControlSocket::Extra& extra) {
  const auto request = serialised(action, extra);
  if (!request) return request;
  if (auto written = write(socket, *request); !written) return std::unexpected(std::move(written.error()));
  return readAnswer(socket);
}

/// Replaces the secret by dots. A very short secret could be part of any word; then the whole text is
/// replaced.
std::string without(std::string_view secret, std::string text, std::string_view other) {
  constexpr std::size_t minSecretLength = 8;
  if (secret.empty() || !text.contains(secret)) return text;
  if (secret.size() < minSecretLength) return std::string(other);
  for (auto at = text.find(secret); at != std::string::npos; at = text.find(secret, at)) {
    text.replace(at, secret.size(), "…");
  }
  return text;
}

/// The text with JSON escapes, without the quotation marks.
std::string asRequested(std::string_view text) {
  const auto quoted = nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  return quoted.substr(1, quoted.size() - 2);
}

/// The error without the enrolment token, which a daemon may repeat when it refuses it.
ControlSocketError withoutToken(ControlSocketError error, const ControlSocket::Extra& extra) {
  const auto member = extra.find("enrollment_token");
  const auto* token = member == extra.end() ? nullptr : std::get_if<std::string>(&member->second);
  if (token == nullptr) return error;
  const std::string secret(trimmed(*token));
  for (const auto& form : {secret, asRequested(secret)}) {
    error.message = without(form, std::move(error.message), refusedSilently);
    error.reason = without(form, std::move(error.reason), "…");
  }
  return error;
}

}  // namespace

std::string ControlSocketError::userMessage(std::string_view operation) const {
  switch (kind) {
    case Case::io:
      return Copy::socketIo.with(detail);
    case Case::requestFailed:
    case Case::refused:
      return message;
    case Case::notInstalled:
      return std::string(Copy::socketNotInstalled.text());
    case Case::notAdmin:
      return Copy::socketNotAdmin.with(operation);
    case Case::malformedResponse:
      return std::string(Copy::socketMalformedResponse.text());
    case Case::requestNotSerialised:
      return std::string(notSerialised);
  }
  return {};
}

ControlSocket::ControlSocket(UnixSockets& sockets, const Files& files, std::string_view path)
    : sockets_(sockets), files_(files), path_(path) {}

std::expected<JsonObject, ControlSocketError> ControlSocket::send(const std::string& action,
                                                                  const Extra& extra) const {
  const auto socket = connect();
  if (!socket) return std::unexpected(socket.error());
  const auto answer = exchanged(**socket, action, extra);
  if (!answer) return std::unexpected(answer.error());
  auto response = JsonObject::parse(*answer);
  if (!response) return failed(Case::malformedResponse);
  if (response->boolean("ok") == true) return std::move(*response);
  return std::unexpected(withoutToken(failure(*response), extra));
}

bool ControlSocket::queryEnrolled() const {
  const auto response = send("status");
  return response && response->boolean("enrolled") == true;
}

bool ControlSocket::queryTrustPending() const {
  const auto response = send("catrust");
  return response && response->boolean("trust_pending") == true;
}

ControlSocketError ControlSocket::failure(const JsonObject& response) {
  auto message = response.text("error").value_or(std::string(refusedSilently));
  auto reason = response.text("reason").value_or("");
  const auto kind = reason.empty() ? Case::requestFailed : Case::refused;
  return {.kind = kind, .message = std::move(message), .reason = std::move(reason)};
}

std::expected<std::unique_ptr<UnixSocket>, ControlSocketError> ControlSocket::connect() const {
  if (!files_.exists(path_)) return failed(Case::notInstalled);
  auto socket = sockets_.open();
  if (!socket) return ioFailed(withErrno("socket() errno ", socket.error()));
  (*socket)->setTimeouts(timeout, timeout);
  if (path_.size() > maxPathLength) return ioFailed("socket path too long");
  const auto connected = (*socket)->connect(path_);
  if (!connected) return connectFailed(connected.error());
  return std::move(*socket);
}

}  // namespace ostrel
