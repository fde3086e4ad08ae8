#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OstrelAgent/Containers/CachedFile.hpp"
#include "OstrelAgent/Containers/ContainerTrustReading.hpp"
#include "Platform/RunningProcesses.hpp"
#include "Platform/UserAccount.hpp"

namespace ostrel {

/// What the containers page needs besides the running runtimes.
struct ContainerInstallation {
  std::set<std::string> installed;
  std::optional<Date> caPublishedAt;  ///< when the trust bundle was last written
  std::optional<bool> dockerSharesLibrary;
  std::optional<std::string> bundlePEM;

  bool operator==(const ContainerInstallation&) const = default;
};

/// What was found on this Mac at one time.
struct ContainerFindings {
  RunningRuntimes running;
  std::optional<ContainerInstallation> installation;  ///< nullopt when it was not looked for

  bool operator==(const ContainerFindings&) const = default;
};

/// The page's reading from what was found and the current block.
ContainerTrustReading containerTrustReading(std::optional<ContainerBlock> block,
                                            const ContainerFindings& findings);

/// Looks for container runtimes on this Mac. Calls block; one at a time, on any thread.
class ContainerDetector {
 public:
  struct Services {
    const Workspace& workspace;
    const RunningProcesses& processes;
    const Files& files;
    const UserAccount& account;
  };

  explicit ContainerDetector(Services services);

  RunningRuntimes running() const;

  /// Reads only files that have changed since the last call, or that could not be read then.
  ContainerInstallation installation();

 private:
  Services services_;
  CachedFile bundle_;
  std::optional<std::string> bundlePEM_;
  std::vector<CachedFile> dockerSettings_;
  std::optional<bool> dockerSharesLibrary_;
};

}  // namespace ostrel
