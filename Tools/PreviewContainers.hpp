#pragma once

#include <expected>
#include <string_view>

#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "OstrelAgent/Text/Json.hpp"

namespace ostrel {

/// Reads the situation of a containers page from an object whose keys may all be missing: "block"
/// {"runtimes", "clears_by"}, "running" {name: launch time or null}, "installed", "ca_published_at",
/// "docker_shares_library", "bundle_pem", "notify", "notification_authorization", "selected" and "snippet".
[[nodiscard]] std::expected<ContainersPage, JsonError> readContainersPage(std::string_view bytes);

}  // namespace ostrel
