#include "OstrelAgent/Containers/DockerFileSharing.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "OstrelAgent/Containers/TrustBundle.hpp"

namespace ostrel {

namespace {

using Json = nlohmann::json;

bool isBundleOrAbove(std::string folder) {
  if (folder == "/") return true;
  if (folder.ends_with('/')) folder.pop_back();
  if (folder.empty()) return false;
  return folder == "/" || folder == trustbundle::folder || trustbundle::folder.starts_with(folder + "/");
}

/// The texts of the list; elements of other types are skipped.
std::optional<std::vector<std::string>> sharedFolders(const Json& settings) {
  const auto list = settings.find("filesharingDirectories");
  if (list == settings.end() || !list->is_array()) return std::nullopt;
  std::vector<std::string> folders;
  for (const auto& folder : *list) {
    if (folder.is_string()) folders.push_back(folder.get<std::string>());
  }
  return folders;
}

}  // namespace

std::vector<std::string> DockerFileSharing::settingsFiles(std::string_view home) {
  const auto folder = std::string(home) + "/Library/Group Containers/group.com.docker/";
  return {folder + "settings-store.json", folder + "settings.json"};
}

std::optional<bool> DockerFileSharing::sharesLibrary(
    const std::vector<std::optional<std::string>>& settings) {
  for (const auto& bytes : settings) {
    if (!bytes) continue;
    const auto document = Json::parse(*bytes, nullptr, false);
    if (!document.is_object()) continue;
    const auto folders = sharedFolders(document);
    return folders ? std::optional(coversBundle(*folders)) : std::nullopt;
  }
  return std::nullopt;
}

bool DockerFileSharing::coversBundle(const std::vector<std::string>& folders) {
  return std::ranges::any_of(folders, isBundleOrAbove);
}

}  // namespace ostrel
