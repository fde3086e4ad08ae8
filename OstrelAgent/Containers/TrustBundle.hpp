#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// The device certificate in the form that containers use: a PEM file that the daemon publishes on the Mac.
namespace ostrel::trustbundle {

inline constexpr std::string_view folder = "/Library/Application Support/ostrel-agent-endpoint-trust";
inline constexpr std::string_view file =
    "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem";
inline constexpr std::string_view pathInContainer = "/ostrel/trust.pem";

/// The environment variables that point common tools at `pathInContainer`.
inline constexpr std::array<std::string_view, 3> variables = {"SSL_CERT_FILE", "NODE_EXTRA_CA_CERTS",
                                                              "REQUESTS_CA_BUNDLE"};

/// A larger bundle does not fit into one argument of a command on Linux.
inline constexpr std::size_t maxBytes = std::size_t{120} * 1024;

/// The file's text, or nullopt when it is blank or cannot be pasted unchanged into the guest command: too
/// large, not UTF-8, or with an apostrophe, a carriage return, a NUL or a line "EOF".
std::optional<std::string> usableText(std::string bytes);

}  // namespace ostrel::trustbundle
