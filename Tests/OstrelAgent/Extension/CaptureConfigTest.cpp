#include "OstrelAgent/Extension/CaptureConfig.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace ostrel {
namespace {

TEST(CaptureConfig, TheBundlesListHasNineteenHosts) {
  std::ifstream file(CAPTURED_HOSTS, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const auto config = CaptureConfig::ofHostList(bytes);
  ASSERT_TRUE(config) << config.error();
  const std::vector<std::string> hosts = {
      "registry.npmjs.org",
      "registry.yarnpkg.com",
      "npm.pkg.github.com",
      "pypi.org",
      "files.pythonhosted.org",
      "rubygems.org",
      "index.rubygems.org",
      "proxy.golang.org",
      "sum.golang.org",
      "repo.packagist.org",
      "packagist.org",
      "registry-1.docker.io",
      "auth.docker.io",
      "production.cloudflare.docker.com",
      "ghcr.io",
      "quay.io",
      "gcr.io",
      "mcr.microsoft.com",
      "public.ecr.aws",
  };
  EXPECT_EQ(config->capturedHosts, hosts);
}

TEST(CaptureConfig, IsCompactJsonWithSortedKeysAndTheHostsInTheirOrder) {
  const auto config = CaptureConfig::ofHostList(" [\"pypi.org\",\n\"ghcr.io\"] ");
  ASSERT_TRUE(config);
  EXPECT_EQ(
      config->json(),
      R"({"captured_hosts":["pypi.org","ghcr.io"],"daemon_addr":"127.0.0.1:65531","schema_version":1})");
  EXPECT_EQ(config->appliedRecord(Date(std::chrono::milliseconds(999))),
            R"({"applied_at":"1970-01-01T00:00:00Z","captured_hosts":["pypi.org","ghcr.io"],)"
            R"("daemon_addr":"127.0.0.1:65531","schema_version":1})");
}

TEST(CaptureConfig, ADamagedListIsRefusedWithTheReason) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "it is no JSON list"},
      {"[\"pypi.org\",\"ghcr", "it is no JSON list"},
      {"{\"pypi.org\":true}", "it is no JSON list"},
      {"[\"pypi.org\"] []", "it is no JSON list"},
      {"[\"\xff.org\"]", "it is no JSON list"},
      {std::string(100000, '['), "it is no JSON list"},
      {"[]", "it is empty"},
      {"[\"pypi.org\",7]", "entry 2 is no host name"},
      {"[[\"pypi.org\"]]", "entry 1 is no host name"},
      {"[\"\"]", "entry 1 is no host name"},
      {"[\"PyPI.org\"]", "entry 1 is no host name"},
      {"[\"pypi\"]", "entry 1 is no host name"},
      {"[\"pypi..org\"]", "entry 1 is no host name"},
      {"[\".pypi.org\"]", "entry 1 is no host name"},
      {"[\"pypi.org.\"]", "entry 1 is no host name"},
      {"[\"pypi.org:443\"]", "entry 1 is no host name"},
      {"[\"pypi.org\\u0000\"]", "entry 1 is no host name"},
      {"[\"" + std::string(250, 'a') + ".org\"]", "entry 1 is no host name"},
  };
  for (const auto& [bytes, reason] : rows) {
    const auto config = CaptureConfig::ofHostList(bytes);
    ASSERT_FALSE(config) << bytes.substr(0, 40);
    EXPECT_EQ(config.error(), reason) << bytes.substr(0, 40);
  }
}

}  // namespace
}  // namespace ostrel
