#pragma once

#include <array>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Files.hpp"
#include "Platform/Workspace.hpp"

namespace ostrel {

/// The names of running runtimes, with the launch date where it is known.
using RunningRuntimes = std::map<std::string, std::optional<Date>, std::less<>>;

/// A container runtime or virtual machine, and how its containers can trust the device certificate.
struct ContainerRuntime {
  enum class Trust {
    keychainForPulls,  ///< its image pulls use the keychain; a restart is enough
    vmManual,          ///< the certificate is copied into its VM
    certsDir,          ///< it has a certificate folder of its own
    guestOwned,        ///< a general-purpose VM: the guest's owner installs the certificate
    noHostTrust,       ///< it offers no trust from the host
  };

  /// Up to two texts.
  class Names {
   public:
    constexpr Names() = default;
    constexpr Names(std::string_view only) : names_{only}, size_(1) {}
    constexpr Names(std::string_view first, std::string_view second) : names_{first, second}, size_(2) {}

    constexpr const std::string_view* begin() const { return names_.data(); }
    constexpr const std::string_view* end() const { return names_.data() + size_; }
    constexpr bool operator==(const Names&) const = default;

   private:
    std::array<std::string_view, 2> names_;
    std::size_t size_ = 0;
  };

  std::string_view name;  ///< display name and key
  Names bundlePrefixes;   ///< of its applications' bundle identifiers
  Names processPrefixes;  ///< of command names, at most 16 bytes
  Names binaries;         ///< command-line programs that show it is installed
  Trust trust = Trust::noHostTrust;
  bool sharesLibrary = true;  ///< its VM sees the Mac's /Library
  std::optional<std::string_view> vmShell = std::nullopt;
  std::optional<std::string_view> vmAnchor = std::nullopt;   ///< path of the certificate in the VM
  std::optional<std::string_view> vmRefresh = std::nullopt;  ///< rebuilds the VM's trust store
  std::optional<std::string_view> vmRestart = std::nullopt;

  /// Every known runtime, in the order of the containers page.
  static const std::span<const ContainerRuntime> table;

  /// The runtime of that name, or null.
  static const ContainerRuntime* find(std::string_view name);

  /// The runtimes that run, by their applications and by names of processes. Of several launch dates the
  /// earliest counts.
  static RunningRuntimes running(const std::vector<RunningApplication>& applications,
                                 const std::vector<std::string>& processes);

  /// Names of the runtimes with an application or a command-line program. Blocks.
  static std::set<std::string> installed(const Workspace& workspace, const Files& files);

  /// Names of the runtimes that were launched before the device certificate was published and read the
  /// keychain only at launch.
  static std::set<std::string> needingRestart(const RunningRuntimes& running,
                                              std::optional<Date> caPublishedAt);

  /// The command for the Mac that installs the certificate in this runtime, or nullopt.
  std::optional<std::string> vmSetupCommand() const;

  /// The command to paste into a guest system, or nullopt when the bundle is absent or blank.
  static std::optional<std::string> guestCommand(const std::optional<std::string>& bundlePEM);

  /// The same command with one line in place of the certificates.
  static std::optional<std::string> guestCommandPreview(const std::optional<std::string>& bundlePEM);

  constexpr bool operator==(const ContainerRuntime&) const = default;
};

}  // namespace ostrel
