#include "SimulatedEndpoint/SimulatedState.hpp"

#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "SimulatedEndpoint/DottedPath.hpp"
#include "SimulatedEndpoint/JsonFile.hpp"

namespace ostrel::simulated {

namespace {

struct Preference {
  std::string_view path;
  const char* file;
  Json (*content)(const Json& document);
};

constexpr std::array<Preference, 3> preferences = {{
    {"network.transparent_proxies", simulatedstate::transparentProxies,
     [](const Json& document) -> Json { return document["network"]["transparent_proxies"]; }},
    {"network.content_filter", simulatedstate::contentFilter,
     [](const Json& document) -> Json { return document["network"]["content_filter"]; }},
    {"mdm_enrolled", simulatedstate::deviceManagement,
     [](const Json& document) -> Json {
       return {{"enrolled", document["mdm_enrolled"]}};
     }},
}};

constexpr std::array<const char*, 2> endpointFiles = {
    "/Library/LaunchDaemons/tech.brenn.ostrel-agent-endpoint.plist",
    "/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem",
};

}  // namespace

std::expected<Scenario, std::string> SimulatedState::scenario() const {
  const auto path = root_.realPath(simulatedstate::scenario);
  const auto document = readJsonFile(files_, path);
  if (!document) return std::unexpected(document.error());
  if (document->is_null()) return Scenario::initial();
  auto current = Scenario::fromJson(*document);
  if (!current) return std::unexpected(path + ": " + current.error());
  return current;
}

std::expected<void, std::string> SimulatedState::choose(const Scenario& scenario,
                                                        std::string_view changedPath) const {
  for (const auto& preference : preferences) {
    if (!pathsTouch(preference.path, changedPath)) continue;
    auto written =
        writeJsonFile(files_, root_.realPath(preference.file), preference.content(scenario.document()));
    if (!written) return written;
  }
  return writeJsonFile(files_, root_.realPath(simulatedstate::scenario), scenario.document());
}

std::expected<std::vector<std::string>, std::string> SimulatedState::uninstall(
    const Scenario& current) const {
  const auto after = current.uninstalled();
  if (!after) return std::unexpected(after.error());
  auto written = writeJsonFile(files_, root_.realPath(simulatedstate::scenario), after->document());
  if (!written) return std::unexpected(written.error());
  std::vector<std::string> removed;
  for (const auto* file : endpointFiles) {
    const auto path = root_.realPath(file);
    if (!files_.exists(path)) continue;
    if (auto gone = files_.remove(path); !gone) {
      return std::unexpected("cannot remove " + path + ": " + gone.error().description);
    }
    removed.emplace_back(file);
  }
  return removed;
}

std::expected<bool, std::string> SimulatedState::isDeviceManaged() const {
  const auto path = root_.realPath(simulatedstate::deviceManagement);
  const auto state = readJsonFile(files_, path);
  if (!state) return std::unexpected(state.error());
  if (state->is_null()) return false;
  if (state->is_object() && state->contains("enrolled") && state->at("enrolled").is_boolean()) {
    return state->at("enrolled").get<bool>();
  }
  return std::unexpected(path + " must hold \"enrolled\", true or false");
}

std::expected<void, std::string> SimulatedState::linkProfilesTool(const std::string& tool) const {
  namespace fs = std::filesystem;
  const fs::path link = root_.realPath("/usr/bin/profiles");
  std::error_code error;
  const auto kind = fs::symlink_status(link, error).type();
  if (kind == fs::file_type::symlink && fs::read_symlink(link, error) == tool) return {};
  if (kind != fs::file_type::symlink && kind != fs::file_type::not_found) return {};
  const auto fresh = link.string() + ".new";
  fs::create_directories(link.parent_path(), error);
  fs::remove(fresh, error);
  fs::create_symlink(tool, fresh, error);
  if (!error) fs::rename(fresh, link, error);
  if (error) return std::unexpected("cannot link " + link.string() + ": " + error.message());
  return {};
}

}  // namespace ostrel::simulated
