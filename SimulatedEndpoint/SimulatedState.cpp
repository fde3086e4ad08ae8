#include "SimulatedEndpoint/SimulatedState.hpp"

#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "Platform/Posix/FileLock.hpp"
#include "SimulatedEndpoint/DottedPath.hpp"
#include "SimulatedEndpoint/EndpointFiles.hpp"
#include "SimulatedEndpoint/EndpointReport.hpp"
#include "SimulatedEndpoint/JsonFile.hpp"

namespace ostrel::simulated {

namespace {

struct Preference {
  std::string_view path;
  const char* file;
  Json (*content)(const Json& document);
};

constexpr std::array<Preference, 4> preferences = {{
    {"network.transparent_proxies", simulatedstate::transparentProxies,
     [](const Json& document) -> Json { return document["network"]["transparent_proxies"]; }},
    {"network.content_filter", simulatedstate::contentFilter,
     [](const Json& document) -> Json { return document["network"]["content_filter"]; }},
    {"extension", simulatedstate::systemExtension,
     [](const Json& document) -> Json { return document["extension"]; }},
    {"mdm_enrolled", simulatedstate::deviceManagement,
     [](const Json& document) -> Json {
       return {{"enrolled", document["mdm_enrolled"]}};
     }},
}};

constexpr std::array<const char*, 3> tools = {"/usr/bin/profiles", "/usr/bin/security", "/bin/launchctl"};

[[nodiscard]] std::expected<void, std::string> linkTool(const std::filesystem::path& link,
                                                        const std::string& tool) {
  namespace fs = std::filesystem;
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

Json SimulatedState::preference(const char* file, const Json& otherwise) const {
  const auto value = readJsonFile(files_, root_.realPath(file));
  return !value || value->is_null() ? otherwise : *value;
}

std::expected<Scenario, std::string> SimulatedState::observed() const {
  const auto current = scenario();
  if (!current) return current;
  const auto& network = current->network();
  const auto extension = preference(simulatedstate::systemExtension, current->extension());
  const auto chosen =
      SystemFacts::of(current->extension(), network["transparent_proxies"], network["content_filter"]);
  const auto facts = SystemFacts::of(
      extension, preference(simulatedstate::transparentProxies, network["transparent_proxies"]),
      preference(simulatedstate::contentFilter, network["content_filter"]));
  if (facts == chosen) return current;
  return current->withReport(
      reportAfterSystemChange(current->report(), facts, extension.value("bundled", "")));
}

std::expected<void, std::string> SimulatedState::choose(const Scenario& scenario,
                                                        std::string_view changedPath) const {
  const auto lock = FileLock::take(root_.realPath(simulatedstate::lock));
  if (!lock) return std::unexpected(lock.error().description);
  return write(scenario, changedPath);
}

std::expected<Scenario, std::string> SimulatedState::changed(const Change& change) const {
  const auto current = scenario();
  return current ? change(*current) : current;
}

std::expected<void, std::string> SimulatedState::change(const Change& change,
                                                        std::string_view changedPath) const {
  // What cannot be done leaves no trace, not even the lock's file.
  if (const auto planned = changed(change); !planned) return std::unexpected(planned.error());
  const auto lock = FileLock::take(root_.realPath(simulatedstate::lock));
  if (!lock) return std::unexpected(lock.error().description);
  const auto after = changed(change);
  if (!after) return std::unexpected(after.error());
  return write(*after, changedPath);
}

std::expected<void, std::string> SimulatedState::changeReport(const std::function<Json(Json)>& change) const {
  return this->change(
      [&change](const Scenario& current) -> std::expected<Scenario, std::string> {
        return current.withReport(change(current.report()));
      },
      "report");
}

std::expected<void, std::string> SimulatedState::write(const Scenario& scenario,
                                                       std::string_view changedPath) const {
  for (const auto& preference : preferences) {
    if (!pathsTouch(preference.path, changedPath)) continue;
    auto written =
        writeJsonFile(files_, root_.realPath(preference.file), preference.content(scenario.document()));
    if (!written) return written;
  }
  return writeJsonFile(files_, root_.realPath(simulatedstate::scenario), scenario.document());
}

std::expected<void, std::string> SimulatedState::writeLaunchFile() const {
  const auto path = root_.realPath(endpointfiles::launchFile);
  auto written = files_.makeFolders(path.substr(0, path.rfind('/')));
  if (written) written = files_.writeAtomically(path, endpointfiles::launchFileText);
  if (!written) return std::unexpected("cannot write " + path + ": " + written.error().description);
  return {};
}

std::expected<std::vector<std::string>, std::string> SimulatedState::uninstall() const {
  auto changed = change([](const Scenario& current) { return current.uninstalled(); }, "report");
  if (!changed) return std::unexpected(changed.error());
  std::vector<std::string> removed;
  for (const auto* file : endpointfiles::all) {
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

std::expected<void, std::string> SimulatedState::linkTools(const std::string& folder) const {
  for (const std::string tool : tools) {
    auto linked = linkTool(root_.realPath(tool), folder + tool.substr(tool.rfind('/')));
    if (!linked) return linked;
  }
  // A Mac has it before any program starts.
  const auto temporaryFolder = root_.realPath(root_.temporaryFolder());
  std::error_code error;
  std::filesystem::create_directories(temporaryFolder, error);
  if (error) return std::unexpected("cannot make " + temporaryFolder + ": " + error.message());
  return {};
}

}  // namespace ostrel::simulated
