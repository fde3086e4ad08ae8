#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// The folder that is "/" of the simulated Mac. /Library, the system tools that the program calls, the tools
/// of container runtimes, the home and the temporary folder are mapped beneath it; every other path is real,
/// and the bundle is never mapped.
class HostRoot {
 public:
  /// Takes the absolute real path of the root, Mac paths of home and temporary folder, real path of the
  /// bundle.
  HostRoot(std::string root, std::string home, std::string temporaryFolder, std::string bundle);

  /// Root from OSTREL_HOST_ROOT, else a folder in the user's home; home from HOME, temporary folder from
  /// TMPDIR.
  static HostRoot fromEnvironment(std::string bundle);

  /// The real path behind a Mac path.
  std::string realPath(std::string_view macPath) const;

  const std::string& path() const { return root_; }
  /// Mac path of the home without trailing slash; empty when it is "/".
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
/// A list of {"enabled": bool, "connected": bool, …}, one per saved configuration; a missing file is an empty
/// list.
inline constexpr const char* transparentProxies =
    "/Library/Preferences/SystemConfiguration/ostrel-agent.transparent-proxies.json";
/// {"provider": bool, "enabled": bool, …}; a missing file is a disabled filter without provider.
inline constexpr const char* contentFilter =
    "/Library/Preferences/SystemConfiguration/ostrel-agent.content-filter.json";
/// {"installed": version or null, "enabled": bool, "bundled": version, "awaiting": null, "activation" or
/// "deactivation"}; a missing file is a Mac on which the extension was never installed.
inline constexpr const char* systemExtension = "/Library/SystemExtensions/ostrel-agent.system-extension.json";
/// Overrides set by a developer; a missing file has none.
inline constexpr const char* overrides = "/Library/Application Support/simulated-endpoint/overrides.json";
/// Lock that a process holds while it changes one of these files.
inline constexpr const char* lock = "/Library/Application Support/simulated-endpoint/state.lock";
/// {"enrolled": bool}: reported by the stand-in for the profiles tool.
inline constexpr const char* deviceManagement =
    "/Library/Preferences/SystemConfiguration/ostrel-agent.device-management.json";
/// {"installed": [bundle identifiers], "running": [{"identifier": text or null, "launched": milliseconds
/// since the epoch or null}], "processes": [names]}; a missing file is a Mac without any.
inline constexpr const char* applications =
    "/Library/Application Support/simulated-endpoint/applications.json";
/// The scenario that the stand-in helper reports.
inline constexpr const char* scenario = "/Library/Application Support/simulated-endpoint/scenario.json";
}  // namespace simulatedstate

}  // namespace ostrel
