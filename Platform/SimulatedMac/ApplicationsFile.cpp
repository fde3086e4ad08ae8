#include "Platform/SimulatedMac/ApplicationsFile.hpp"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace ostrel {

namespace {

using Json = nlohmann::json;

/// The texts of a list, without its other elements.
std::vector<std::string> textsOf(const Json& object, const char* name) {
  std::vector<std::string> texts;
  const auto list = object.find(name);
  if (list == object.end() || !list->is_array()) return texts;
  for (const auto& each : *list) {
    if (each.is_string()) texts.push_back(each.get<std::string>());
  }
  return texts;
}

std::optional<Date> launchDateOf(const Json& entry) {
  const auto time = entry.find("launched");
  if (time == entry.end() || !time->is_number_integer()) return std::nullopt;
  if (time->is_number_unsigned() && !std::in_range<std::int64_t>(time->get<std::uint64_t>())) {
    return std::nullopt;
  }
  return Date(std::chrono::milliseconds(time->get<std::int64_t>()));
}

std::vector<RunningApplication> runningOf(const Json& object) {
  std::vector<RunningApplication> running;
  const auto list = object.find("running");
  if (list == object.end() || !list->is_array()) return running;
  for (const auto& entry : *list) {
    if (!entry.is_object()) continue;
    RunningApplication application{.bundleIdentifier = {}, .launchDate = launchDateOf(entry)};
    const auto identifier = entry.find("identifier");
    if (identifier != entry.end() && !identifier->is_null()) {
      if (!identifier->is_string()) continue;
      application.bundleIdentifier = identifier->get<std::string>();
    }
    running.push_back(std::move(application));
  }
  return running;
}

Json jsonOf(const RunningApplication& application) {
  Json json = {{"identifier", nullptr}, {"launched", nullptr}};
  if (application.bundleIdentifier) json["identifier"] = *application.bundleIdentifier;
  if (application.launchDate) json["launched"] = application.launchDate->time_since_epoch().count();
  return json;
}

}  // namespace

ApplicationsState applicationsOfFile(std::string_view bytes) {
  const auto json = Json::parse(bytes, nullptr, false);
  if (!json.is_object()) return {};
  auto installed = textsOf(json, "installed");
  return {.installed = {installed.begin(), installed.end()},
          .running = runningOf(json),
          .processes = textsOf(json, "processes")};
}

std::string fileOfApplications(const ApplicationsState& state) {
  auto running = Json::array();
  for (const auto& application : state.running) running.push_back(jsonOf(application));
  const Json json = {{"installed", state.installed}, {"running", running}, {"processes", state.processes}};
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace ostrel
