#pragma once

#include "OstrelAgent/Daemon/HelperRunner.hpp"
#include "OstrelAgent/OnboardingFlow.hpp"
#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// What the helper's status report says of the setup; nothing read when it fails or does not decode. Blocks.
SetupObservation readSetup(const HelperRunner& helper, const ChildEnding& ending = {});

/// The observation with what the network preferences say; after a failed load at most that the extension is
/// active.
SetupObservation withTransparentProxies(SetupObservation observation,
                                        const NetworkPreferences::TransparentProxies& loaded);

}  // namespace ostrel
