#include "OstrelAgent/Containers/ContainerRuntime.hpp"

#include <algorithm>

namespace ostrel {

namespace {

using enum ContainerRuntime::Trust;
using Names = ContainerRuntime::Names;

constexpr std::string_view debianAnchor = "/usr/local/share/ca-certificates/ostrel.crt";
constexpr std::string_view redHatAnchor = "/etc/pki/ca-trust/source/anchors/ostrel.pem";
constexpr std::string_view debianRefresh = "update-ca-certificates";
constexpr std::string_view redHatRefresh = "update-ca-trust";

// The kernel keeps 16 bytes of a command name, so the process prefixes of "Apple Container" are cut there.
constexpr std::array runtimes = {
    ContainerRuntime{
        "Docker", {"com.docker."}, {"com.docker.backend", "vpnkit"}, {}, keychainForPulls, false},
    ContainerRuntime{"OrbStack", {"dev.orbstack.", "dev.kdrag0n.MacVirt"}, {}, {}, keychainForPulls},
    ContainerRuntime{"Rancher Desktop", {"io.rancherdesktop."}, {}, {}, keychainForPulls},
    ContainerRuntime{"Colima",
                     {},
                     {"colima"},
                     {"colima"},
                     vmManual,
                     true,  //
                     "colima ssh --",
                     debianAnchor,
                     debianRefresh,
                     "colima restart"},
    ContainerRuntime{"Lima",
                     {},
                     {"limactl"},
                     {"limactl"},
                     vmManual,
                     true,  //
                     "limactl shell default",
                     debianAnchor,
                     debianRefresh,
                     "limactl stop default && limactl start default"},
    ContainerRuntime{"Podman",
                     {"io.podman_desktop."},
                     {"gvproxy", "krunkit"},
                     {"podman"},
                     vmManual,
                     true,
                     "podman machine ssh",
                     redHatAnchor,
                     redHatRefresh,
                     "podman machine stop && podman machine start"},
    ContainerRuntime{"Multipass",
                     {"com.canonical.multipass"},
                     {"multipassd"},
                     {"multipass"},
                     vmManual,
                     true,
                     "multipass exec primary --",
                     debianAnchor,
                     debianRefresh,
                     "multipass restart primary"},
    ContainerRuntime{"minikube", {}, {"minikube"}, {"minikube"}, certsDir},
    ContainerRuntime{"vfkit", {}, {"vfkit"}, {"vfkit"}, guestOwned},
    ContainerRuntime{"QEMU", {}, {"qemu-system"}, {"qemu-system-aarch64", "qemu-system-x86_64"}, guestOwned},
    ContainerRuntime{"UTM", {"com.utmapp."}, {}, {}, guestOwned},
    ContainerRuntime{"Parallels", {"com.parallels."}, {}, {}, guestOwned},
    ContainerRuntime{"VMware Fusion", {"com.vmware.fusion"}, {"vmware-vmx"}, {}, guestOwned},
    ContainerRuntime{"VirtualBox", {"org.virtualbox.app."}, {"VBoxHeadless", "VirtualBoxVM"}, {}, guestOwned},
    ContainerRuntime{"Apple Container",
                     {"com.apple.container."},
                     {"container-apiser", "container-core-"},
                     {"container"},
                     noHostTrust},
};

constexpr std::array<std::string_view, 3> binaryFolders = {"/opt/homebrew/bin/", "/usr/local/bin/",
                                                           "/usr/bin/"};

bool startsWithAny(std::string_view text, const Names& prefixes) {
  return std::ranges::any_of(prefixes, [&](std::string_view prefix) { return text.starts_with(prefix); });
}

/// The earlier date; a known one is preferred.
std::optional<Date> earlier(std::optional<Date> first, std::optional<Date> second) {
  if (!first || !second) return first ? first : second;
  return std::min(*first, *second);
}

bool hasApplication(const ContainerRuntime& runtime, const Workspace& workspace) {
  return std::ranges::any_of(runtime.bundlePrefixes, [&](std::string_view prefix) {
    return prefix.ends_with('.') ? workspace.hasApplicationWithPrefix(std::string(prefix))
                                 : workspace.hasApplication(std::string(prefix));
  });
}

bool hasBinary(const ContainerRuntime& runtime, const Files& files) {
  return std::ranges::any_of(runtime.binaries, [&](std::string_view binary) {
    return std::ranges::any_of(binaryFolders, [&](std::string_view folder) {
      return files.stamp(std::string(folder).append(binary)).has_value();
    });
  });
}

}  // namespace

constexpr std::span<const ContainerRuntime> ContainerRuntime::table = runtimes;

const ContainerRuntime* ContainerRuntime::find(std::string_view name) {
  const auto found = std::ranges::find(table, name, &ContainerRuntime::name);
  return found == table.end() ? nullptr : &*found;
}

RunningRuntimes ContainerRuntime::running(const std::vector<RunningApplication>& applications,
                                          const std::vector<std::string>& processes) {
  RunningRuntimes running;
  for (const auto& application : applications) {
    if (!application.bundleIdentifier) continue;
    for (const auto& runtime : table) {
      if (!startsWithAny(*application.bundleIdentifier, runtime.bundlePrefixes)) continue;
      auto& date = running[std::string(runtime.name)];
      date = earlier(date, application.launchDate);
    }
  }
  for (const auto& process : processes) {
    for (const auto& runtime : table) {
      if (startsWithAny(process, runtime.processPrefixes)) running.try_emplace(std::string(runtime.name));
    }
  }
  return running;
}

std::set<std::string> ContainerRuntime::installed(const Workspace& workspace, const Files& files) {
  std::set<std::string> names;
  for (const auto& runtime : table) {
    if (hasApplication(runtime, workspace) || hasBinary(runtime, files)) names.emplace(runtime.name);
  }
  return names;
}

std::set<std::string> ContainerRuntime::needingRestart(const RunningRuntimes& running,
                                                       std::optional<Date> caPublishedAt) {
  std::set<std::string> names;
  for (const auto& [name, launchDate] : running) {
    const auto* runtime = find(name);
    if (runtime == nullptr || runtime->trust != Trust::keychainForPulls) continue;
    if (launchDate && caPublishedAt && *launchDate < *caPublishedAt) names.insert(name);
  }
  return names;
}

}  // namespace ostrel
