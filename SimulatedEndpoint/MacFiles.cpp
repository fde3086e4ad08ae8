#include "SimulatedEndpoint/MacFiles.hpp"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "Platform/Posix/FileLock.hpp"
#include "SimulatedEndpoint/DeviceCertificate.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "SimulatedEndpoint/JsonFile.hpp"

namespace ostrel::simulated {

namespace {

constexpr const char* toolFolder = "/opt/homebrew/bin/";
constexpr const char* toolText = "#!/bin/sh\nexit 0\n";

}  // namespace

bool isToolName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && !name.contains('/');
}

MacFiles::Done MacFiles::installTool(const std::string& name) const {
  namespace fs = std::filesystem;
  const auto path = root_.realPath(toolFolder + name);
  if (auto written = write(path, toolText); !written) return written;
  std::error_code error;
  fs::permissions(path, fs::perms(0755), error);
  if (error) return std::unexpected("cannot make " + path + " executable: " + error.message());
  return {};
}

MacFiles::Done MacFiles::removeTool(const std::string& name) const {
  return remove(root_.realPath(toolFolder + name));
}

MacFiles::Done MacFiles::replaceTools(const std::vector<std::string>& names) const {
  namespace fs = std::filesystem;
  std::vector<std::string> surplus;
  std::error_code error;
  for (fs::directory_iterator entry(root_.path() + toolFolder, error), end; !error && entry != end;
       entry.increment(error)) {
    const auto name = entry->path().filename().string();
    const bool isStandIn = files_.read(entry->path()) == std::string(toolText);
    if (isStandIn && std::ranges::count(names, name) == 0) surplus.push_back(name);
  }
  Done done;
  for (const auto& name : surplus) done = done ? removeTool(name) : done;
  for (const auto& name : names) done = done ? installTool(name) : done;
  return done;
}

MacFiles::Done MacFiles::shareWithDocker(std::span<const std::string> paths) const {
  const auto lock = FileLock::take(root_.realPath(simulatedstate::lock));
  if (!lock) return std::unexpected(lock.error().description);
  auto settings = readJsonFile(files_, dockerSettings());
  if (!settings) return std::unexpected(settings.error());
  if (settings->is_null()) *settings = Json::object();
  if (!settings->is_object()) return std::unexpected(dockerSettings() + " must hold an object");
  (*settings)["filesharingDirectories"] = std::vector(paths.begin(), paths.end());
  return writeJsonFile(files_, dockerSettings(), *settings);
}

MacFiles::Done MacFiles::removeDockerSettings() const { return remove(dockerSettings()); }

MacFiles::Done MacFiles::publishBundle(Certificates certificates) const {
  auto pem = deviceCertificate(files_, root_);
  if (!pem) return std::unexpected(pem.error());
  if (certificates == Certificates::two) {
    const auto second = secondCertificate(files_, root_);
    if (!second) return std::unexpected(second.error());
    *pem += *second;
  }
  return write(root_.realPath(endpointfiles::trustBundle), *pem);
}

MacFiles::Done MacFiles::dateBundle(Date published) const {
  const auto path = root_.realPath(endpointfiles::trustBundle);
  std::error_code error;
  std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(published), error);
  if (error) return std::unexpected("cannot date " + path + ": " + error.message());
  return {};
}

MacFiles::Done MacFiles::removeBundle() const { return remove(root_.realPath(endpointfiles::trustBundle)); }

std::string MacFiles::dockerSettings() const {
  return root_.realPath(root_.home() + "/Library/Group Containers/group.com.docker/settings-store.json");
}

MacFiles::Done MacFiles::write(const std::string& path, const std::string& bytes) const {
  auto written = files_.makeFolders(path.substr(0, path.rfind('/')));
  if (written) written = files_.writeAtomically(path, bytes);
  if (!written) return std::unexpected("cannot write " + path + ": " + written.error().description);
  return {};
}

MacFiles::Done MacFiles::remove(const std::string& path) const {
  const auto removed = files_.remove(path);
  if (!removed) return std::unexpected("cannot remove " + path + ": " + removed.error().description);
  return {};
}

}  // namespace ostrel::simulated
