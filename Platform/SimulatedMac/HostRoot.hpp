#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// The folder that stands for "/" of the simulated Mac. Mapped beneath it are /Library, the system tools that
/// the program calls, the home and the temporary folder; every other path is a real one, the bundle always.
class HostRoot {
 public:
  /// Absolute real path of the root, Mac paths of home and temporary folder, real path of the bundle.
  HostRoot(std::string root, std::string home, std::string temporaryFolder, std::string bundle);

  /// Root by OSTREL_HOST_ROOT, else a folder of the user's own; home by HOME, temporary folder by TMPDIR.
  static HostRoot fromEnvironment(std::string bundle);

  /// The real path behind a Mac path.
  std::string realPath(std::string_view macPath) const;

  const std::string& path() const { return root_; }
  /// Mac path of the home, without a slash at the end: empty when it is "/".
  const std::string& home() const { return home_; }
  const std::string& temporaryFolder() const { return temporaryFolder_; }

 private:
  std::string root_;
  std::string home_;
  std::string temporaryFolder_;
  std::string bundle_;
};

/// Mac paths of the simulated Mac's state; each file is JSON.
namespace simulatedstate {
/// A list of {"enabled": bool, "connected": bool}, one a configuration, with what else was saved of it; a
/// missing file is an empty list.
inline constexpr const char* transparentProxies =
    "/Library/Preferences/SystemConfiguration/ostrel-agent.transparent-proxies.json";
/// {"provider": bool, "enabled": bool} with what else was saved; a missing file is a filter without provider,
/// not enabled.
inline constexpr const char* contentFilter =
    "/Library/Preferences/SystemConfiguration/ostrel-agent.content-filter.json";
/// {"installed": version or null, "enabled": bool, "bundled": version, "awaiting": null, "activation" or
/// "deactivation"}; a missing file is a Mac on which the extension was never installed.
inline constexpr const char* systemExtension = "/Library/SystemExtensions/ostrel-agent.system-extension.json";
/// What a developer has ordered to happen; a missing file is nothing.
inline constexpr const char* overrides = "/Library/Application Support/simulated-endpoint/overrides.json";
/// Held by a process while it changes one of the files here.
inline constexpr const char* lock = "/Library/Application Support/simulated-endpoint/state.lock";
/// {"enrolled": bool}: what the stand-in for the profiles tool tells.
inline constexpr const char* deviceManagement =
    "/Library/Preferences/SystemConfiguration/ostrel-agent.device-management.json";
/// What the stand-in helper answers.
inline constexpr const char* scenario = "/Library/Application Support/simulated-endpoint/scenario.json";
}  // namespace simulatedstate

}  // namespace ostrel
