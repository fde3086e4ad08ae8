#pragma once

#include <string>

#include "OstrelAgent/Containers/ContainersPage.hpp"

namespace ostrel {

/// The page's list of runtimes, each section with a blank line behind it.
std::string containersListText(const ContainersPageContent& content);

/// The detail of the selected runtime, or that none is selected.
std::string containerDetailText(const ContainersPageContent& content);

/// How a container is started so that it trusts the certificate.
std::string containersInsideText(const ContainersPageContent& content);

}  // namespace ostrel
