#include "SimulatedEndpoint/ScenarioFolder.hpp"

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <utility>

#include "SimulatedEndpoint/JsonFile.hpp"

namespace ostrel::simulated {

namespace {

/// Single letters to insert, drop or change to make one text the other.
std::size_t editDistance(std::string_view one, std::string_view other) {
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < one.size(); ++i) {
    auto diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < other.size(); ++j) {
      const auto changed = diagonal + (one[i] == other[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::vector<std::string> ScenarioFolder::names() const {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(path_, error), end; !error && entry != end;
       entry.increment(error)) {
    if (entry->path().extension() == ".json") names.push_back(entry->path().stem().string());
  }
  std::ranges::sort(names);
  return names;
}

std::optional<std::string> ScenarioFolder::closestName(std::string_view misspelt) const {
  std::optional<std::string> closest;
  auto nearest = std::max<std::size_t>(2, misspelt.size() / 3);
  for (const auto& name : names()) {
    if (misspelt.size() >= 4 && name.starts_with(misspelt)) return name;
    const auto distance = editDistance(misspelt, name);
    if (distance > nearest || (closest && distance == nearest)) continue;
    closest = name;
    nearest = distance;
  }
  return closest;
}

std::expected<Scenario, std::string> ScenarioFolder::load(const std::string& name) const {
  auto own = document(name);
  if (!own) return std::unexpected(own.error());
  Json whole = Json::object();
  if (own->contains("based_on")) {
    if (!(*own)["based_on"].is_string()) return std::unexpected(name + ".json: \"based_on\" must be a name");
    const auto base = document((*own)["based_on"].get<std::string>());
    if (!base) return std::unexpected(name + ".json: " + base.error());
    if (base->contains("based_on"))
      return std::unexpected(name + ".json: its base is itself based on another");
    whole.update(*base);
    own->erase("based_on");
  }
  whole.merge_patch(*own);
  // It is taken whole: null is one of its values.
  if (own->contains("mac")) whole["mac"] = (*own)["mac"];
  whole["name"] = name;
  auto scenario = Scenario::fromJson(whole);
  if (!scenario) return std::unexpected(name + ".json: " + scenario.error());
  return scenario;
}

std::expected<Json, std::string> ScenarioFolder::document(const std::string& name) const {
  if (!std::ranges::binary_search(names(), name))
    return std::unexpected("there is no scenario " + inQuotes(name));
  const auto path = path_ + "/" + name + ".json";
  auto document = readJsonFile(files_, path);
  if (document && !document->is_object()) return std::unexpected(path + " must be an object");
  return document;
}

}  // namespace ostrel::simulated
