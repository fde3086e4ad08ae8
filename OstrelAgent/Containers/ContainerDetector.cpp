#include "OstrelAgent/Containers/ContainerDetector.hpp"

#include <utility>

#include "OstrelAgent/Containers/DockerFileSharing.hpp"
#include "OstrelAgent/Containers/TrustBundle.hpp"

namespace ostrel {

namespace {

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
    : services_(services), dockerSettings_(DockerFileSharing::settingsFiles(services.account.homeFolder)) {}

RunningRuntimes ContainerDetector::running() const {
  return ContainerRuntime::running(services_.workspace.runningApplications(), services_.processes.names());
}

ContainerInstallation ContainerDetector::installation() {
  readBundle();
  readDockerSettings();
  return {.installed = ContainerRuntime::installed(services_.workspace, services_.files),
          .caPublishedAt = bundleStamp_ ? std::optional(bundleStamp_->modified) : std::nullopt,
          .dockerSharesLibrary = dockerSharesLibrary_,
          .bundlePEM = bundlePEM_};
}

/// The stamp is from before the read: a file that is replaced meanwhile is read again next time.
void ContainerDetector::readBundle() {
  const std::string path(trustbundle::file);
  const auto stamp = services_.files.stamp(path);
  if (stamp && stamp == bundleStamp_) return;
  bundleStamp_ = stamp;
  bundlePEM_.reset();
  if (!stamp || stamp->size > trustbundle::maxBytes) return;
  if (auto bytes = services_.files.read(path)) bundlePEM_ = trustbundle::usableText(*std::move(bytes));
}

void ContainerDetector::readDockerSettings() {
  Stamps stamps;
  for (const auto& path : dockerSettings_) stamps.push_back(services_.files.stamp(path));
  if (stamps == dockerStamps_) return;
  dockerStamps_ = std::move(stamps);
  dockerSharesLibrary_ = DockerFileSharing::sharesLibrary(services_.account.homeFolder, services_.files);
}

}  // namespace ostrel
