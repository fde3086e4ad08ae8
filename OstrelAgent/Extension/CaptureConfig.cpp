#include "OstrelAgent/Extension/CaptureConfig.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "OstrelAgent/Status/RFC3339.hpp"

namespace ostrel {

namespace {

constexpr std::size_t maxHostNameLength = 253;

/// Only lower-case names: hosts are compared byte by byte.
bool isHostName(std::string_view text) {
  const auto isAllowed = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.';
  };
  return text.size() <= maxHostNameLength && text.contains('.') && std::ranges::all_of(text, isAllowed) &&
         !text.starts_with('.') && !text.ends_with('.') && !text.contains("..");
}

nlohmann::json objectOf(const CaptureConfig& config) {
  return {{"captured_hosts", config.capturedHosts},
          {"daemon_addr", config.daemonAddress},
          {"schema_version", config.schemaVersion}};
}

}  // namespace

std::expected<CaptureConfig, std::string> CaptureConfig::ofHostList(std::string_view bytes) {
  const auto list = nlohmann::json::parse(bytes, nullptr, false);
  if (!list.is_array()) return std::unexpected("it is no JSON list");
  if (list.empty()) return std::unexpected("it is empty");
  CaptureConfig config;
  for (const auto& entry : list) {
    const auto* host = entry.get_ptr<const std::string*>();
    if (host == nullptr || !isHostName(*host)) {
      return std::unexpected("entry " + std::to_string(config.capturedHosts.size() + 1) + " is no host name");
    }
    config.capturedHosts.push_back(*host);
  }
  return config;
}

std::string CaptureConfig::json() const { return objectOf(*this).dump(); }

std::string CaptureConfig::appliedRecord(Date appliedAt) const {
  auto object = objectOf(*this);
  object["applied_at"] = formatRFC3339(appliedAt);
  return object.dump();
}

}  // namespace ostrel
