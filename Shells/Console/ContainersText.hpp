#pragma once

#include <string>

#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "Shells/Console/WindowButtons.hpp"

namespace ostrel {

/// The page's list of runtimes, each section with a blank line behind it.
std::string containersListText(const ContainersPageContent& content);

/// The detail of the selected runtime, or that none is selected. Its buttons are written into `buttons`;
/// without that, the text names the words to type.
std::string containerDetailText(const ContainersPageContent& content, WindowButtons* buttons = nullptr);

/// How a container is started so that it trusts the certificate.
std::string containersInsideText(const ContainersPageContent& content, WindowButtons* buttons = nullptr);

}  // namespace ostrel
