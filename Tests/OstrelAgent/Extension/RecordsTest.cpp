#include "OstrelAgent/Extension/Records.hpp"

#include <gtest/gtest.h>

#include <cerrno>

#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

constexpr const char* folder = "/Users/robin/Library/Application Support/ostrel-agent-endpoint/";

struct RecordsTest : testing::Test {
  std::string read(const std::string& name) const {
    return host.files.read(folder + name).value_or("missing");
  }

  FakeHost host;
  Records records{host.files, host.clock, host.userAccount};
};

TEST_F(RecordsTest, AnAssertionHoldsOnlyKnownValues) {
  struct Row {
    NetworkExtensionAssertion assertion;
    std::string record;
  };
  const Row rows[] = {
      {{}, R"({"configuration_exists":false,"enabled":false,"observed_at":"2025-01-02T00:00:00Z"})"},
      {{.egressLockExists = true, .egressLockEnabled = true, .mdmEnrolled = false},
       R"({"configuration_exists":true,"enabled":true,"mdm_enrolled":false,)"
       R"("observed_at":"2025-01-02T00:00:00Z"})"},
      {{.egressLockExists = true,
        .transparentProxy = Snapshot::TransparentProxy{.approved = true, .enabled = false},
        .mdmEnrolled = true},
       R"({"configuration_exists":true,"enabled":false,"mdm_enrolled":true,)"
       R"("observed_at":"2025-01-02T00:00:00Z","transparent_proxy_approved":true,)"
       R"("transparent_proxy_enabled":false})"},
  };
  for (const auto& row : rows) {
    records.recordNetworkExtensionAssertion(row.assertion);
    EXPECT_EQ(read("egress-lock-configuration.json"), row.record);
  }
}

TEST_F(RecordsTest, TheReactivatedVersionIsReadTrimmed) {
  EXPECT_EQ(records.reactivatedVersion(), "");
  records.recordReactivated("1.4.0");
  EXPECT_EQ(read("reactivated-version"), "1.4.0");
  const std::pair<std::string, const char*> rows[] = {
      {"1.4.0", "1.4.0"}, {"1.4.0\n", "1.4.0"}, {" \t\r\n1.4 beta\r\n\n", "1.4 beta"}, {" \n", ""}, {"", ""}};
  for (const auto& [bytes, version] : rows) {
    host.files.put(folder + std::string("reactivated-version"), bytes);
    EXPECT_EQ(records.reactivatedVersion(), version) << bytes;
  }
  host.files.readError = PlatformError{posixErrorDomain, EACCES, "denied"};
  EXPECT_EQ(records.reactivatedVersion(), "");
}

TEST_F(RecordsTest, AFailedWriteLeavesTheEarlierRecord) {
  records.recordReactivated("1.4.0");
  host.files.writeError = PlatformError{posixErrorDomain, ENOSPC, "full"};
  records.recordReactivated("1.5.0");
  records.recordAppliedCapture({});
  EXPECT_EQ(read("reactivated-version"), "1.4.0");
  EXPECT_EQ(read("applied-capture.json"), "missing");
  FakeHost other;
  other.files.put("/Users/robin/Library/Application Support", "a file in the folder's place");
  const Records refused(other.files, other.clock, other.userAccount);
  refused.recordNetworkExtensionAssertion({});
  EXPECT_EQ(other.files.files.size(), 1U);
}

}  // namespace
}  // namespace ostrel
