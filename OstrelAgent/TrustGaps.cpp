#include "OstrelAgent/TrustGaps.hpp"

namespace ostrel::TrustGaps {

namespace {

struct Row {
  std::string_view env;
  std::string_view ecosystem;
};

constexpr Row rows[] = {
    {"NODE_EXTRA_CA_CERTS", "npm"}, {"REQUESTS_CA_BUNDLE", "pypi"}, {"SSL_CERT_FILE", "rubygems"},
    {"SSL_CERT_FILE", "pypi"},      {"GEMRC", "rubygems"},          {"PHP_INI_SCAN_DIR", "packagist"},
};

}  // namespace

std::vector<std::string> legacyKnobProtects(std::string_view env) {
  std::vector<std::string> ecosystems;
  for (const auto& row : rows) {
    if (row.env == env) ecosystems.emplace_back(row.ecosystem);
  }
  return ecosystems;
}

}  // namespace ostrel::TrustGaps
