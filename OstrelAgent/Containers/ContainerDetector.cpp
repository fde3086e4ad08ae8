#include "OstrelAgent/Containers/ContainerDetector.hpp"

#include <utility>

#include "OstrelAgent/Containers/DockerFileSharing.hpp"
#include "OstrelAgent/Containers/TrustBundle.hpp"

namespace ostrel {

namespace {

constexpr std::uint64_t maxSettingsBytes = 8 << 20;

std::set<std::string> namesOf(const RunningRuntimes& running) {
  std::set<std::string> names;
  for (const auto& [name, launchDate] : running) names.insert(name);
  return names;
}

}  // namespace

ContainerTrustReading containerTrustReading(std::optional<ContainerBlock> block,
                                            const ContainerFindings& findings) {
  const auto installation = findings.installation.value_or(ContainerInstallation());
  return {std::move(block),
          {.running = namesOf(findings.running),
           .installed = installation.installed,
           .needsRestart = ContainerRuntime::needingRestart(findings.running, installation.caPublishedAt),
           .dockerSharesLibrary = installation.dockerSharesLibrary,
           .bundlePEM = installation.bundlePEM}};
}

ContainerDetector::ContainerDetector(Services services)
    : services_(services), bundle_(std::string(trustbundle::file), trustbundle::maxBytes) {
  for (auto& path : DockerFileSharing::settingsFiles(services.account.homeFolder)) {
    dockerSettings_.emplace_back(std::move(path), maxSettingsBytes);
  }
}

RunningRuntimes ContainerDetector::running() const {
  return ContainerRuntime::running(services_.workspace.runningApplications(), services_.processes.names());
}

ContainerInstallation ContainerDetector::installation() {
  if (bundle_.update(services_.files)) {
    bundlePEM_ = bundle_.bytes().and_then(trustbundle::usableText);
  }
  bool hasChanged = false;
  std::vector<std::optional<std::string>> settings;
  for (auto& file : dockerSettings_) {
    hasChanged |= file.update(services_.files);
    settings.push_back(file.bytes());
  }
  if (hasChanged) dockerSharesLibrary_ = DockerFileSharing::sharesLibrary(settings);
  return {.installed = ContainerRuntime::installed(services_.workspace, services_.files),
          .caPublishedAt = bundle_.stamp().transform([](const FileStamp& stamp) { return stamp.modified; }),
          .dockerSharesLibrary = dockerSharesLibrary_,
          .bundlePEM = bundlePEM_};
}

}  // namespace ostrel
