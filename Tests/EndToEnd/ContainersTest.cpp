#include <utility>

#include "Tests/EndToEnd/Mac.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

/// A change shows at the next refresh, at most five seconds later; the rest is for a busy machine.
constexpr auto oneRefresh = 10s;

const std::string bundlePath = "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem";

const std::string colimaSetup = "cat \"" + bundlePath +
                                "\" | colima ssh -- sudo tee /usr/local/share/ca-certificates/ostrel.crt "
                                ">/dev/null && colima ssh -- sudo update-ca-certificates && colima restart";
const std::string minikubeSetup = "mkdir -p ~/.minikube/certs && cp \"" + bundlePath +
                                  "\" ~/.minikube/certs/ostrel.pem && minikube start --embed-certs";

/// The lines of the guest command around the certificate.
const std::string guestStart =
    "sudo sh -c 'if command -v update-ca-trust >/dev/null; then d=/etc/pki/ca-trust/source/anchors; "
    "f=$d/ostrel.pem; else d=/usr/local/share/ca-certificates; f=$d/ostrel.crt; fi; mkdir -p \"$d\"; "
    "cat > \"$f\" <<\"EOF\"";
const std::string guestEnd =
    "if command -v update-ca-trust >/dev/null; then update-ca-trust; else update-ca-certificates; fi'";

/// The menu-bar role on the console.
struct Containers : testing::Test {
  Process menuBar(std::string_view lines = {}) const {
    return Process(mac.command("menubar"), mac.environment, lines);
  }

  static void quit(Process& agent) {
    agent.write("quit\n");
    EXPECT_EQ(agent.end(), 0);
    EXPECT_EQ(agent.error(), "");
  }

  Mac mac;
};

TEST_F(Containers, AnOpenPageFollowsTheMacWithinFiveSeconds) {
  mac.control({"scenario", "protected"});
  auto agent = menuBar("containers\n");
  agent.awaitOutput("\nNot installed\n  Docker\n  OrbStack\n");
  mac.control({"app", "install", "com.docker.docker"});
  mac.control({"app", "start", "com.docker.docker"});
  mac.control({"tool", "install", "colima"});
  mac.control({"tool", "install", "podman"});
  mac.control({"process", "start", "colima"});
  agent.awaitOutput(
      "\nInstalled\n"
      "  Docker           running\n"
      "  Colima           running\n"
      "  Podman           installed\n"
      "\nNot installed\n"
      "  OrbStack\n",
      oneRefresh);
  agent.write("panel\n");
  agent.awaitOutput("· Containers       Colima and Docker running\n");
  agent.write("close\ncontainers docker\n");
  agent.awaitOutput("To\n  mount the bundle, add its folder under Settings › Resources › File sharing.\n");
  mac.control({"docker-sharing", "/Users", "/Library"});
  mac.control({"bundle", "publish"});
  agent.awaitOutput(
      "\nDocker · restart · running\n"
      "  The runtime trusts the device certificate; containers inside it don't yet. Its\n"
      "  file sharing covers the bundle's folder. Restart it to pick up the device\n"
      "  certificate.\n",
      oneRefresh);
  mac.control({"app", "stop", "com.docker.docker"});
  mac.control({"app", "start", "com.docker.docker"});
  agent.awaitOutput("\nDocker · running\n", oneRefresh);
  quit(agent);
}

TEST_F(Containers, ADetailSaysWhatToDoForEachWayOfTrust) {
  const std::pair<std::string, std::string> rows[] =
      {
          {"Docker", R"(
Docker · running
  The runtime trusts the device certificate; containers inside it don't yet. Its
  file sharing does not cover the bundle's folder yet: add it under Settings ›
  Resources › File sharing, or the mount below fails.
)"},
          {"Colima", R"(
Colima · running
  Its VM keeps its own store; the command below installs the bundle there and
  restarts the VM.

    )" + colimaSetup + R"(
  Copy setup command: copy setup
)"},
          {"minikube", R"(
minikube · running
  Copies certificates from ~/.minikube/certs into the node on start; the command
  below puts the bundle there.

    )" + minikubeSetup + R"(
  Copy setup command: copy setup
)"},
          {"QEMU", R"(
QEMU · running
  The guest system is yours to configure; the command below is pasted inside it.
  Started by minikube, Podman machine, Multipass or CRC: use that tool's row.

    )" + guestStart + R"(
    )" + bundlePath + R"(: 1 certificate, 1 KB, pasted here by Copy …
    EOF
    )" + guestEnd + R"(
  Copy guest command: copy guest
)"},
          {"Apple Container", R"(
Apple Container · installed
  Runs containers on this Mac without reading the keychain. Its framework can
  take a custom CA, but the container command exposes no setting for it yet, so
  it cannot trust the device certificate until it does.
)"},
      };
  const std::string tail = "\n  Copy bundle path: copy path\n  [ ] Notify me when a container in ";
  mac.control({"scenario", "containers-all"});
  mac.control({"notifications", "authorized"});
  auto agent = menuBar("copy setup\n");
  agent.awaitOutput("Select a runtime\n");
  for (const auto& [name, text] : rows) {
    agent.write("containers " + name + "\n");
    agent.awaitOutput(text + tail + name + " is blocked\n\n");
  }
  agent.write("copy setup\ncopy guest\n");
  agent.awaitOutput("Apple Container has no such command\nApple Container has no such command\n");
  quit(agent);
}

TEST_F(Containers, CopyPutsWholeTextsOnThePasteboard) {
  mac.control({"scenario", "containers-all"});
  const auto pem = mac.place.read("root" + bundlePath);
  const std::pair<std::string, std::string> rows[] = {
      {"containers minikube\ncopy setup", minikubeSetup},
      {"containers Colima\ncopy setup", colimaSetup},
      {"containers QEMU\ncopy guest", guestStart + "\n" + pem + "EOF\n" + guestEnd},
      {"copy path", bundlePath},
      {"copy dockerRun", R"(docker run \
  -v ")" + bundlePath + R"(:/ostrel/trust.pem:ro" \
  -e SSL_CERT_FILE=/ostrel/trust.pem \
  -e NODE_EXTRA_CA_CERTS=/ostrel/trust.pem \
  -e REQUESTS_CA_BUNDLE=/ostrel/trust.pem \
  node:22 npm install)"},
      {"copy compose", R"(services:
  app:
    volumes:
      - ")" + bundlePath + R"(:/ostrel/trust.pem:ro"
    environment:
      SSL_CERT_FILE: /ostrel/trust.pem
      NODE_EXTRA_CA_CERTS: /ostrel/trust.pem
      REQUESTS_CA_BUNDLE: /ostrel/trust.pem)"},
      {"copy dockerfile",
       R"(# docker build --build-context ostrel="/Library/Application Support/ostrel-agent-endpoint-trust" .
# Builder stage only: registries are reached while building; the
# runtime image needs nothing.
COPY --from=ostrel bundle.pem /ostrel/trust.pem
ENV SSL_CERT_FILE=/ostrel/trust.pem
ENV NODE_EXTRA_CA_CERTS=/ostrel/trust.pem
ENV REQUESTS_CA_BUNDLE=/ostrel/trust.pem)"},
      {"copy envFile", R"(# ~/.ostrel/container.env, then: docker run --env-file ~/.ostrel/container.env \
#   -v ")" + bundlePath + R"(:/ostrel/trust.pem:ro" …
SSL_CERT_FILE=/ostrel/trust.pem
NODE_EXTRA_CA_CERTS=/ostrel/trust.pem
REQUESTS_CA_BUNDLE=/ostrel/trust.pem)"},
  };
  auto agent = menuBar("containers\n");
  agent.awaitOutput("Apple Container  installed\n");
  for (const auto& [lines, text] : rows) {
    agent.write(lines + "\n");
    agent.awaitOutput("to copy:\n" + text + "\n");
  }
  agent.write("copy all\n");
  agent.awaitOutput("copy takes setup, guest, path, dockerRun, compose, dockerfile or envFile\n");
  quit(agent);
}

TEST_F(Containers, ANotificationSettingOutlivesTheAgentAndShowsWhyNoneAppears) {
  mac.control({"scenario", "containers-blocked-running"});
  mac.control({"notifications", "authorized"});
  auto first = menuBar("containers\nnotify rancher desktop on\nnotify Docker  on\nnotify Docker off\n");
  first.awaitOutput("Notify me when a container in Rancher Desktop is blocked: on\n");
  first.awaitOutput("Notify me when a container in Docker is blocked: off\n");
  first.write("notify all off\nnotify rancher desktop on\n");
  first.awaitOutput("blocked: off\n");
  first.awaitOutput("Notify me when a container in Rancher Desktop is blocked: on\n");
  first.write("notify Dokcer on\nnotify Docker maybe\ncontainers \"Rancher Desktop\"\n");
  first.awaitOutput("there is no container runtime \"Dokcer\"; containers shows all\n");
  first.awaitOutput("commands: ");
  first.awaitOutput("there is no container runtime \"\"Rancher Desktop\"\"; containers shows all\n");
  quit(first);
  auto second = menuBar("containers Rancher Desktop\n");
  second.awaitOutput("\n  [x] Notify me when a container in Rancher Desktop is blocked\n\n");
  second.write("notify Podman on\n");
  second.awaitOutput("A container in Podman was blocked: ", oneRefresh);
  mac.control({"notifications", "denied"});
  second.awaitOutput(
      "is blocked\n"
      "  Notifications for Ostrel Agent are off in macOS.\n",
      oneRefresh);
  second.write("containers\n");
  second.awaitOutput("\nBlocked\n  Colima           blocked\n  Podman           blocked\n\nNot installed\n");
  mac.control({"scenario", "containers-need-restart"});
  second.awaitOutput(
      "\nInstalled\n"
      "  Docker           restart\n"
      "  OrbStack         restart\n"
      "> Rancher Desktop  running\n"
      "\nNot installed\n"
      "  Colima\n",
      oneRefresh);
  quit(second);
}

}  // namespace
}  // namespace ostrel
