#include "SimulatedEndpoint/DeviceCertificate.hpp"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "Platform/Posix/PosixChildProcesses.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"

namespace ostrel::simulated {

namespace {

constexpr std::string_view header = "-----BEGIN CERTIFICATE-----";
constexpr std::string_view footer = "-----END CERTIFICATE-----";
constexpr const char* openssl = "/usr/bin/openssl";

[[nodiscard]] std::expected<std::string, std::string> freshCertificate() {
  PosixChildProcesses children([](std::string_view path) { return std::string(path); });
  const auto ran = children.run({.executable = openssl,
                                 .arguments = {"req",
                                               "-x509",
                                               "-newkey",
                                               "ec",
                                               "-pkeyopt",
                                               "ec_paramgen_curve:P-256",
                                               "-nodes",
                                               "-keyout",
                                               "/dev/null",
                                               "-config",
                                               "/dev/null",
                                               "-days",
                                               "3650",
                                               "-subj",
                                               "/O=Ostrel Guard/CN=Ostrel Guard device certificate",
                                               "-addext",
                                               "basicConstraints=critical,CA:TRUE,pathlen:0",
                                               "-addext",
                                               "keyUsage=critical,keyCertSign,cRLSign",
                                               "-addext",
                                               "subjectKeyIdentifier=hash"},
                                 .output = ChildStream::captured,
                                 .error = ChildStream::discarded});
  if (!ran) return std::unexpected(std::string("cannot run ") + openssl + ": " + ran.error().description);
  if (ran->status != 0 || !isCertificate(ran->output)) {
    return std::unexpected(std::string(openssl) + " made no certificate (exit " +
                           std::to_string(ran->status) + ")");
  }
  return ran->output;
}

std::optional<unsigned> valueOfBase64(char character) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const auto place = digits.find(character);
  return place == std::string_view::npos ? std::nullopt : std::optional(static_cast<unsigned>(place));
}

/// The bytes of a text of base64 whose lines end as they like, or nothing.
std::optional<std::string> bytesOfBase64(std::string_view text) {
  std::string bytes;
  std::uint32_t bits = 0;
  std::size_t digits = 0;
  std::size_t padding = 0;
  for (const char character : text) {
    if (character == '\n' || character == '\r') continue;
    const auto value = valueOfBase64(character);
    if (character == '=') ++padding;
    if (character != '=' && (!value || padding > 0)) return std::nullopt;
    bits = bits << 6 | value.value_or(0);
    if (++digits % 4 != 0) continue;
    for (const int shift : {16, 8, 0}) bytes += static_cast<char>(bits >> shift & 0xff);
  }
  if (digits % 4 != 0 || padding > 2) return std::nullopt;
  bytes.resize(bytes.size() - padding);
  return bytes;
}

/// Whether the bytes are one sequence of DER, with a length of the long form as certificates have it.
bool isSequence(std::string_view der) {
  const auto byte = [&](std::size_t place) { return static_cast<unsigned char>(der[place]); };
  if (der.size() < 4 || byte(0) != 0x30 || byte(1) < 0x81 || byte(1) > 0x83) return false;
  const std::size_t lengthBytes = byte(1) - 0x80U;
  if (der.size() < 2 + lengthBytes) return false;
  std::size_t length = 0;
  for (std::size_t place = 2; place < 2 + lengthBytes; ++place) length = length << 8 | byte(place);
  return der.size() == 2 + lengthBytes + length;
}

/// The certificate of a file; a fresh one is written there when it holds none.
[[nodiscard]] std::expected<std::string, std::string> keptCertificate(Files& files, const std::string& path) {
  if (auto kept = files.read(path); kept && isCertificate(*kept)) return *kept;
  auto fresh = freshCertificate();
  if (!fresh) return fresh;
  auto written = files.makeFolders(path.substr(0, path.rfind('/')));
  if (written) written = files.writeAtomically(path, *fresh);
  if (!written) return std::unexpected("cannot write " + path + ": " + written.error().description);
  return fresh;
}

}  // namespace

std::expected<std::string, std::string> deviceCertificate(Files& files, const HostRoot& root) {
  return keptCertificate(files, root.realPath(endpointfiles::certificate));
}

std::expected<std::string, std::string> secondCertificate(Files& files, const HostRoot& root) {
  return keptCertificate(files, root.realPath(endpointfiles::secondCertificate));
}

bool isCertificate(std::string_view pem) {
  while (pem.ends_with('\n') || pem.ends_with('\r')) pem.remove_suffix(1);
  if (!pem.starts_with(header) || !pem.ends_with(footer)) return false;
  pem.remove_prefix(header.size());
  if (pem.size() < footer.size()) return false;
  pem.remove_suffix(footer.size());
  const auto der = bytesOfBase64(pem);
  return der && isSequence(*der);
}

}  // namespace ostrel::simulated
