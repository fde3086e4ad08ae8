#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/NetworkPreferences.hpp"

namespace ostrel {

/// Configurations in the format of the file `simulatedstate::transparentProxies`, or why they are damaged. A
/// configuration without identifier gets one from its position.
NetworkPreferences::TransparentProxies transparentProxiesOfFile(std::string_view bytes);
std::string fileOfTransparentProxies(const std::vector<TransparentProxyConfiguration>& configurations);

/// The same for the filter in `simulatedstate::contentFilter`.
NetworkPreferences::ContentFilter contentFilterOfFile(std::string_view bytes);
std::string fileOfContentFilter(const ContentFilterConfiguration& configuration);

/// The error of the preferences when their file cannot be read or written.
PlatformError unusableProxies(std::string reason);
PlatformError unusableFilter(std::string reason);

}  // namespace ostrel
