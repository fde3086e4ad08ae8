// The commands by which a runtime or a guest system is made to trust the device certificate.

#include <algorithm>

#include "OstrelAgent/Containers/ContainerRuntime.hpp"
#include "OstrelAgent/Containers/TrustBundle.hpp"
#include "OstrelAgent/Text/Whitespace.hpp"

namespace ostrel {

namespace {

using std::string_literals::operator""s;

constexpr std::string_view certificateStart = "-----BEGIN CERTIFICATE-----";

/// The guest command around the body of its here-document.
std::string guestCommandAround(std::string_view body) {
  return "sudo sh -c 'if command -v update-ca-trust >/dev/null; then "
         "d=/etc/pki/ca-trust/source/anchors; f=$d/ostrel.pem; "
         "else d=/usr/local/share/ca-certificates; f=$d/ostrel.crt; fi; "
         "mkdir -p \"$d\"; cat > \"$f\" <<\"EOF\"\n"s.append(body) +
         "\nEOF\n"
         "if command -v update-ca-trust >/dev/null; then update-ca-trust; else update-ca-certificates; fi'";
}

std::size_t countOf(std::string_view part, std::string_view text) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

std::string summaryOf(std::string_view pem) {
  const auto certificates = countOf(certificateStart, pem);
  const auto kilobytes = std::max<std::size_t>(pem.size() / 1024, 1);
  return std::string(trustbundle::file) + ": " + std::to_string(certificates) +
         (certificates == 1 ? " certificate, " : " certificates, ") + std::to_string(kilobytes) +
         " KB, pasted here by Copy …";
}

/// The bundle's certificates without whitespace around; empty when there are none.
std::string_view certificatesOf(const std::optional<std::string>& bundlePEM) {
  return bundlePEM ? trimmed(*bundlePEM) : std::string_view();
}

}  // namespace

std::optional<std::string> ContainerRuntime::vmSetupCommand() const {
  const std::string file(trustbundle::file);
  if (trust == Trust::certsDir) {
    return "mkdir -p ~/.minikube/certs && cp \"" + file +
           "\" ~/.minikube/certs/ostrel.pem && minikube start --embed-certs";
  }
  if (trust != Trust::vmManual || !vmShell || !vmAnchor || !vmRefresh || !vmRestart) return std::nullopt;
  const std::string inVm = std::string(*vmShell) + " sudo ";
  std::string command = "cat \"" + file + "\" | " + inVm + "tee ";
  command.append(*vmAnchor).append(" >/dev/null && ");
  command.append(inVm).append(*vmRefresh).append(" && ").append(*vmRestart);
  return command;
}

std::optional<std::string> ContainerRuntime::guestCommand(const std::optional<std::string>& bundlePEM) {
  const auto certificates = certificatesOf(bundlePEM);
  if (certificates.empty()) return std::nullopt;
  return guestCommandAround(certificates);
}

std::optional<std::string> ContainerRuntime::guestCommandPreview(
    const std::optional<std::string>& bundlePEM) {
  const auto certificates = certificatesOf(bundlePEM);
  if (certificates.empty()) return std::nullopt;
  return guestCommandAround(summaryOf(certificates));
}

}  // namespace ostrel
