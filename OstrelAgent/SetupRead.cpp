#include "OstrelAgent/SetupRead.hpp"

#include <algorithm>

#include "OstrelAgent/StatusRead.hpp"

namespace ostrel {

SetupObservation readSetup(const HelperRunner& helper, const ChildEnding& ending) {
  SetupObservation observation;
  const auto run = runStatus(helper, ending);
  if (run.status != 0) return observation;
  if (const auto report = StatusReport::decode(run.standardOutput)) observation.addReport(*report);
  return observation;
}

SetupObservation withTransparentProxies(SetupObservation observation,
                                        const NetworkPreferences::TransparentProxies& loaded) {
  observation.sysextActive = isConnected(loaded);
  if (!loaded) return observation;
  observation.transparentProxyEnabled = std::ranges::any_of(*loaded, &TransparentProxyConfiguration::enabled);
  return observation;
}

}  // namespace ostrel
