#include "Platform/SimulatedMac/HostRoot.hpp"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace ostrel {

namespace {

constexpr std::array<std::string_view, 12> mappedTools = {
    "/usr/bin/security", "/usr/bin/profiles", "/bin/launchctl",
    // Tools of container runtimes.
    "/usr/bin/colima", "/usr/bin/limactl", "/usr/bin/podman", "/usr/bin/multipass", "/usr/bin/minikube",
    "/usr/bin/vfkit", "/usr/bin/qemu-system-aarch64", "/usr/bin/qemu-system-x86_64", "/usr/bin/container"};

/// Each file directly in these folders is mapped.
constexpr std::array<std::string_view, 2> mappedToolFolders = {"/opt/homebrew/bin/", "/usr/local/bin/"};

/// The folder's path as a prefix of others: "/" becomes empty.
std::string withoutTrailingSlashes(std::string path) {
  while (path.ends_with('/')) path.pop_back();
  return path;
}

bool isWithin(std::string_view path, std::string_view folder) {
  if (folder.empty() || !path.starts_with(folder)) return false;
  return path.size() == folder.size() || path[folder.size()] == '/';
}

bool isMappedTool(std::string_view path) {
  const auto folder = path.substr(0, path.rfind('/') + 1);
  return std::ranges::count(mappedTools, path) > 0 ||
         (std::ranges::count(mappedToolFolders, folder) > 0 && path.size() > folder.size());
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

/// The absolute path; empty for an empty path, or when the current folder no longer exists.
std::string absolutePath(const std::string& path) {
  if (path.empty() || path.starts_with('/')) return path;
  std::error_code error;
  const auto absolute = std::filesystem::absolute(path, error);
  return error ? std::string() : absolute.lexically_normal().string();
}

std::string homeFromEnvironment() {
  auto home = environment("HOME");
  if (home.starts_with('/')) return home;
  const passwd* user = getpwuid(getuid());
  return user != nullptr && user->pw_dir != nullptr && user->pw_dir[0] == '/' ? user->pw_dir : "/";
}

std::string defaultRoot(const std::string& home, const std::string& temporaryFolder) {
  auto state = environment("XDG_STATE_HOME");
  if (state.starts_with('/')) return state + "/ostrel-agent/host-root";
  if (!home.empty()) return home + "/.local/state/ostrel-agent/host-root";
  return temporaryFolder + "/ostrel-agent-" + std::to_string(getuid()) + "/host-root";
}

}  // namespace

HostRoot::HostRoot(std::string root, std::string home, std::string temporaryFolder, std::string bundle)
    : root_(withoutTrailingSlashes(std::move(root))),
      home_(withoutTrailingSlashes(std::move(home))),
      temporaryFolder_(withoutTrailingSlashes(std::move(temporaryFolder))),
      bundle_(withoutTrailingSlashes(std::move(bundle))) {}

HostRoot HostRoot::fromEnvironment(std::string bundle) {
  auto home = withoutTrailingSlashes(homeFromEnvironment());
  auto temporaryFolder = environment("TMPDIR");
  if (!temporaryFolder.starts_with('/')) temporaryFolder = "/tmp";
  temporaryFolder = withoutTrailingSlashes(std::move(temporaryFolder));
  auto root = absolutePath(environment("OSTREL_HOST_ROOT"));
  if (root.empty()) root = defaultRoot(home, temporaryFolder);
  return {std::move(root), std::move(home), std::move(temporaryFolder), std::move(bundle)};
}

std::string HostRoot::realPath(std::string_view macPath) const {
  const bool mapped = isWithin(macPath, "/Library") || isWithin(macPath, home_) ||
                      isWithin(macPath, temporaryFolder_) || isMappedTool(macPath);
  if (!mapped || isWithin(macPath, bundle_)) return std::string(macPath);
  return root_ + std::string(macPath);
}

}  // namespace ostrel
