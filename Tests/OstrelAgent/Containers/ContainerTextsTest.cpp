#include <gtest/gtest.h>

#include "OstrelAgent/Containers/ContainerRuntime.hpp"
#include "OstrelAgent/Containers/ContainerSnippet.hpp"

namespace ostrel {
namespace {

using Text = std::optional<std::string>;

constexpr std::string_view certificate = "-----BEGIN CERTIFICATE-----\nMII\n-----END CERTIFICATE-----";

TEST(ContainerTexts, SetUpTheVirtualMachinesOfRuntimes) {
  const std::map<std::string_view, std::string_view> commands = {
      {"Colima",
       R"(cat "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem" | colima ssh -- sudo tee /usr/local/share/ca-certificates/ostrel.crt >/dev/null && colima ssh -- sudo update-ca-certificates && colima restart)"},
      {"Lima",
       R"(cat "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem" | limactl shell default sudo tee /usr/local/share/ca-certificates/ostrel.crt >/dev/null && limactl shell default sudo update-ca-certificates && limactl stop default && limactl start default)"},
      {"Podman",
       R"(cat "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem" | podman machine ssh sudo tee /etc/pki/ca-trust/source/anchors/ostrel.pem >/dev/null && podman machine ssh sudo update-ca-trust && podman machine stop && podman machine start)"},
      {"Multipass",
       R"(cat "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem" | multipass exec primary -- sudo tee /usr/local/share/ca-certificates/ostrel.crt >/dev/null && multipass exec primary -- sudo update-ca-certificates && multipass restart primary)"},
      {"minikube",
       R"(mkdir -p ~/.minikube/certs && cp "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem" ~/.minikube/certs/ostrel.pem && minikube start --embed-certs)"},
  };
  for (const auto& runtime : ContainerRuntime::table) {
    const auto command = commands.find(runtime.name);
    EXPECT_EQ(runtime.vmSetupCommand(), command == commands.end() ? Text() : Text(command->second))
        << runtime.name;
  }
}

TEST(ContainerTexts, PasteTheTrimmedBundleIntoAGuest) {
  const auto command = [](const std::string& body) {
    return R"(sudo sh -c 'if command -v update-ca-trust >/dev/null; then d=/etc/pki/ca-trust/source/anchors; f=$d/ostrel.pem; else d=/usr/local/share/ca-certificates; f=$d/ostrel.crt; fi; mkdir -p "$d"; cat > "$f" <<"EOF"
)" + body + R"(
EOF
if command -v update-ca-trust >/dev/null; then update-ca-trust; else update-ca-certificates; fi')";
  };
  const auto bundle = "\n\t\u3000" + std::string(certificate) + "\u2028\n";
  EXPECT_EQ(ContainerRuntime::guestCommand(bundle), command(std::string(certificate)));
  EXPECT_EQ(
      ContainerRuntime::guestCommandPreview(bundle),
      command("/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem: 1 certificate, 1 KB, "
              "pasted here by Copy …"));
  for (const auto& nothing : {Text(), Text(""), Text(" \n\u0085\u00A0")}) {
    EXPECT_EQ(ContainerRuntime::guestCommand(nothing), std::nullopt);
    EXPECT_EQ(ContainerRuntime::guestCommandPreview(nothing), std::nullopt);
  }
}

TEST(ContainerTexts, SummarizeTheBundleByCertificatesAndWholeKilobytes) {
  const auto two = std::string(certificate) + "\n" + std::string(certificate);
  for (const auto& [pem, text] : {std::pair(two, ": 2 certificates, 1 KB, "),
                                  std::pair(std::string(2047, 'x') + "\n", ": 0 certificates, 1 KB, "),
                                  std::pair(std::string(2048, 'x'), ": 0 certificates, 2 KB, ")}) {
    EXPECT_NE(ContainerRuntime::guestCommandPreview(pem)->find(text), std::string::npos) << text;
  }
}

TEST(ContainerTexts, StartContainersThatTrustTheBundle) {
  EXPECT_EQ(textOf(ContainerSnippet::dockerRun), R"(docker run \
  -v "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem:/ostrel/trust.pem:ro" \
  -e SSL_CERT_FILE=/ostrel/trust.pem \
  -e NODE_EXTRA_CA_CERTS=/ostrel/trust.pem \
  -e REQUESTS_CA_BUNDLE=/ostrel/trust.pem \
  node:22 npm install)");
  EXPECT_EQ(textOf(ContainerSnippet::compose), R"(services:
  app:
    volumes:
      - "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem:/ostrel/trust.pem:ro"
    environment:
      SSL_CERT_FILE: /ostrel/trust.pem
      NODE_EXTRA_CA_CERTS: /ostrel/trust.pem
      REQUESTS_CA_BUNDLE: /ostrel/trust.pem)");
  EXPECT_EQ(
      textOf(ContainerSnippet::dockerfile),
      R"(# docker build --build-context ostrel="/Library/Application Support/ostrel-agent-endpoint-trust" .
# Builder stage only: registries are reached while building; the
# runtime image needs nothing.
COPY --from=ostrel bundle.pem /ostrel/trust.pem
ENV SSL_CERT_FILE=/ostrel/trust.pem
ENV NODE_EXTRA_CA_CERTS=/ostrel/trust.pem
ENV REQUESTS_CA_BUNDLE=/ostrel/trust.pem)");
  EXPECT_EQ(textOf(ContainerSnippet::envFile),
            R"(# ~/.ostrel/container.env, then: docker run --env-file ~/.ostrel/container.env \
#   -v "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem:/ostrel/trust.pem:ro" …
SSL_CERT_FILE=/ostrel/trust.pem
NODE_EXTRA_CA_CERTS=/ostrel/trust.pem
REQUESTS_CA_BUNDLE=/ostrel/trust.pem)");
}

}  // namespace
}  // namespace ostrel
