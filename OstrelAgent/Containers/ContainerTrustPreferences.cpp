#include "OstrelAgent/Containers/ContainerTrustPreferences.hpp"

#include <vector>

namespace ostrel {

namespace {

constexpr const char* notifyKey = "ContainerBlockNotifyRuntimes";

}  // namespace

std::set<std::string> ContainerTrustPreferences::notify() const {
  const auto names = defaults_.get<std::vector<std::string>>(notifyKey);
  if (!names) return {};
  return {names->begin(), names->end()};
}

std::expected<void, PlatformError> ContainerTrustPreferences::setNotify(const std::string& runtime,
                                                                        bool isOn) {
  auto names = notify();
  if (isOn) names.insert(runtime);
  if (!isOn) names.erase(runtime);
  auto stored = defaults_.set(notifyKey, std::vector(names.begin(), names.end()));
  if (stored && isOn && onEnable) onEnable();
  return stored;
}

std::expected<void, PlatformError> ContainerTrustPreferences::setAll(const std::set<std::string>& runtimes) {
  if (runtimes == notify()) return {};
  auto stored = defaults_.set(notifyKey, std::vector(runtimes.begin(), runtimes.end()));
  if (stored && !runtimes.empty() && onEnable) onEnable();
  return stored;
}

}  // namespace ostrel
