#pragma once

#include <expected>
#include <string>

#include "Platform/Files.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"

namespace ostrel::simulated {

/// The CA certificate of the simulated Mac in PEM form. The system's openssl makes it when it is first asked
/// for; its key is never kept.
[[nodiscard]] std::expected<std::string, std::string> deviceCertificate(Files& files, const HostRoot& root);

/// Another certificate, of another key, made and kept likewise; the daemon never gives it.
[[nodiscard]] std::expected<std::string, std::string> secondCertificate(Files& files, const HostRoot& root);

/// Whether the text is one certificate in PEM form, judged by its armour and its outermost length.
bool isCertificate(std::string_view pem);

}  // namespace ostrel::simulated
