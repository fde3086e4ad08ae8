#include "OstrelAgent/Window/AgentWindowSettings.hpp"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "OstrelAgent/Window/AgentWindowContent.hpp"

namespace ostrel {

namespace {

constexpr const char* pageKey = "AgentWindowPage";
constexpr const char* sizeKey = "AgentWindowSize";

std::optional<AgentPage> readPage(const UserDefaults& defaults) {
  const auto name = defaults.get<std::string>(pageKey);
  return name ? agentPageNamed(*name) : std::nullopt;
}

std::optional<WindowSize> readSize(const UserDefaults& defaults) {
  const auto numbers = defaults.get<std::vector<double>>(sizeKey);
  if (!numbers || numbers->size() != 2) return std::nullopt;
  if (!std::ranges::all_of(*numbers, [](double number) { return std::isfinite(number); }))
    return std::nullopt;
  return atLeastSmallest({numbers->front(), numbers->back()});
}

}  // namespace

AgentWindowModel AgentWindowSettings::read() const {
  return {.page = readPage(defaults_).value_or(AgentPage::ecosystems),
          .size = readSize(defaults_).value_or(AgentWindowModel::firstSize)};
}

void AgentWindowSettings::storePage(AgentPage page) { store(pageKey, std::string(nameOf(page))); }

void AgentWindowSettings::storeSize(const WindowSize& size) {
  store(sizeKey, std::vector<double>{size.width, size.height});
}

void AgentWindowSettings::store(const char* key, DefaultsValue value) {
  if (const auto stored = defaults_.set(key, std::move(value)); !stored) {
    log_.line("ostrel: could not store " + std::string(key) + ": " + stored.error().description);
  }
}

WindowSize atLeastSmallest(const WindowSize& size) {
  constexpr auto smallest = AgentWindowModel::smallestSize;
  return {std::max(smallest.width, size.width), std::max(smallest.height, size.height)};
}

}  // namespace ostrel
