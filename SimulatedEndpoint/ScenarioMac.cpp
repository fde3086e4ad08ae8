#include "SimulatedEndpoint/ScenarioMac.hpp"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>
#include <vector>

#include "SimulatedEndpoint/Applications.hpp"
#include "SimulatedEndpoint/MacFiles.hpp"
#include "SimulatedEndpoint/TimeOffset.hpp"

namespace ostrel::simulated {

namespace {

using Texts = std::vector<std::string>;

/// The date of "@-2h" or of an RFC 3339 time; nullopt for null and for what is no time.
std::optional<Date> dateOf(const Json& value, std::chrono::sys_seconds now) {
  const auto time = withTimes(value, now);
  return time.is_string() ? parseRfc3339(time.get<std::string>()) : std::nullopt;
}

bool isTimeOrNull(const Json& value) {
  return value.is_null() || dateOf(value, std::chrono::sys_seconds()).has_value();
}

bool isListOf(const Json& list, bool (*isValid)(std::string_view)) {
  return list.is_array() && std::ranges::all_of(list, [isValid](const Json& each) {
           return each.is_string() && isValid(each.get_ref<const std::string&>());
         });
}

bool isText(std::string_view text) { return !text.empty(); }

[[nodiscard]] std::expected<void, std::string> shareWithDocker(const Json& folders, const MacFiles& files) {
  auto done = files.removeDockerSettings();
  if (done && !folders.is_null()) done = files.shareWithDocker(folders.get<Texts>());
  return done;
}

[[nodiscard]] std::expected<void, std::string> publishBundle(int number, std::optional<Date> published,
                                                             const MacFiles& files) {
  using Certificates = MacFiles::Certificates;
  if (number == 0) return files.removeBundle();
  auto done = files.publishBundle(number == 1 ? Certificates::one : Certificates::two);
  if (done && published) done = files.dateBundle(*published);
  return done;
}

}  // namespace

Json macWithoutSoftware() {
  return {{"installed", Json::array()}, {"running", Json::object()}, {"processes", Json::array()},
          {"tools", Json::array()},     {"docker_sharing", nullptr}, {"bundle", 0},
          {"bundle_published", nullptr}};
}

std::optional<std::string> macFault(const Json& mac) {
  for (const auto* key : {"installed", "processes"}) {
    if (!isListOf(mac[key], isText)) return inQuotes(std::string("mac.") + key) + " must be a list of texts";
  }
  if (!isListOf(mac["tools"], isToolName)) return "\"mac.tools\" must be a list of names without slash";
  if (!mac["docker_sharing"].is_null() && !isListOf(mac["docker_sharing"], isText)) {
    return "\"mac.docker_sharing\" must be a list of paths, or null";
  }
  const auto& bundle = mac["bundle"];
  if (!bundle.is_number_integer() || bundle < 0 || bundle > 2) return "\"mac.bundle\" must be 0, 1 or 2";
  if (!mac["running"].is_object()) return "\"mac.running\" must be an object";
  auto times = mac["running"];
  times["bundle_published"] = mac["bundle_published"];
  for (const auto& [key, time] : times.items()) {
    if (!isTimeOrNull(time)) {
      return "the time of " + inQuotes(key) + " must be an offset as \"@-2h\" is, of RFC 3339, or null";
    }
  }
  return std::nullopt;
}

std::expected<void, std::string> arrangeMac(const Json& mac, Files& files, const HostRoot& root) {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  const auto installed = mac["installed"].get<Texts>();
  ApplicationsState state{.installed = {installed.begin(), installed.end()},
                          .running = {},
                          .processes = mac["processes"].get<Texts>()};
  for (const auto& [identifier, time] : mac["running"].items()) {
    state.running.push_back({identifier, dateOf(time, now)});
  }
  const MacFiles macFiles(files, root);
  auto done = Applications(files, root).replace(std::move(state));
  if (done) done = macFiles.replaceTools(mac["tools"].get<Texts>());
  if (done) done = shareWithDocker(mac["docker_sharing"], macFiles);
  if (done) done = publishBundle(mac["bundle"], dateOf(mac["bundle_published"], now), macFiles);
  return done;
}

}  // namespace ostrel::simulated
