#include "OstrelAgent/SetupRead.hpp"

#include <algorithm>

namespace ostrel {

SetupObservation readSetup(const HelperRunner& helper, const ChildEnding& ending) {
  SetupObservation observation;
  const auto run = helper.runHelperCapturingStdout({"status", "--json"}, ending);
  if (run.status != 0) return observation;
  if (const auto report = StatusReport::decode(run.standardOutput)) observation.addReport(*report);
  return observation;
}

SetupObservation withTransparentProxies(SetupObservation observation,
                                        const NetworkPreferences::TransparentProxies& loaded) {
  if (!loaded) return observation;
  observation.sysextActive = std::ranges::any_of(*loaded, &TransparentProxyConfiguration::connected);
  observation.transparentProxyEnabled = std::ranges::any_of(*loaded, &TransparentProxyConfiguration::enabled);
  return observation;
}

}  // namespace ostrel
