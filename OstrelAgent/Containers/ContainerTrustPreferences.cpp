#include "OstrelAgent/Containers/ContainerTrustPreferences.hpp"

#include <vector>

namespace ostrel {

std::set<std::string> ContainerTrustPreferences::notify() const {
  const auto names = defaults_->get<std::vector<std::string>>("ContainerBlockNotifyRuntimes");
  if (!names) return {};
  return {names->begin(), names->end()};
}

}  // namespace ostrel
