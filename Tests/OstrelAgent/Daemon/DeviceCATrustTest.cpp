#include "OstrelAgent/Daemon/DeviceCATrust.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <regex>
#include <set>

#include "Tests/Fakes/FakeChildProcesses.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeUnixSockets.hpp"

namespace ostrel {

static void PrintTo(const DeviceCATrust::Outcome& outcome, std::ostream* stream) {
  *stream << static_cast<int>(outcome.kind) << " " << outcome.message;
}

namespace {

using Outcome = DeviceCATrust::Outcome;
using Kind = Outcome::Case;

constexpr const char* certificate = "-----BEGIN CERTIFICATE-----\nMIIB\n-----END CERTIFICATE-----\n";
constexpr const char* trustedAnswer = "{\"ok\":true,\"ca_trusted\":true}\n";
constexpr const char* pendingAnswer =
    R"({"ok":true,"ca_trusted":false,"ca_cert_pem":"-----BEGIN CERTIFICATE-----\nMIIB\n-----END CERTIFICATE-----\n"})";

/// A Mac whose daemon gives the answers in turn and whose tool ends with that result.
struct Mac {
  Mac(std::initializer_list<const char*> answers, FakeChildProcesses::Result tool = ChildResult{0, ""}) {
    files.put(std::string(ControlSocket::socketPath), "");
    files.put("/tmp/other", "");
    for (const auto* answer : answers) sockets.answers.push_back({answer});
    children.answer = [this, tool = std::move(tool)](const ChildCommand& command) {
      const auto staged = files.read(command.arguments.back());
      EXPECT_EQ(staged.value_or("not staged"), certificate);
      return tool;
    };
  }

  Outcome ensureTrusted() {
    const auto before = files.files.size();
    const auto outcome = trust.ensureTrusted();
    EXPECT_EQ(files.files.size(), before) << "the staged file is left";
    return outcome;
  }

  FakeFiles files;
  FakeUnixSockets sockets;
  FakeChildProcesses children;
  UserAccount account{.homeFolder = "/Users/ada", .temporaryFolder = "/tmp", .userIdentifier = 501};
  DeviceCATrust trust{ControlSocket(sockets, files), files, children, account};
};

TEST(DeviceCATrust, ATrustedCertificateRunsNoTool) {
  Mac mac({trustedAnswer});
  EXPECT_EQ(mac.ensureTrusted(), Outcome{Kind::trusted});
  EXPECT_EQ(mac.sockets.connections.size(), 1U);
  EXPECT_TRUE(mac.children.commands.empty());
}

TEST(DeviceCATrust, PassesTheCertificateToTheToolInANewPrivateFile) {
  const std::regex path(
      "/tmp/ostrel-device-ca-[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\\.pem");
  std::set<std::string> paths;
  for (int i = 0; i < 20; ++i) {
    Mac mac({pendingAnswer, trustedAnswer});
    EXPECT_EQ(mac.ensureTrusted(), Outcome{Kind::trusted});
    ASSERT_EQ(mac.children.commands.size(), 1U);
    auto& command = mac.children.commands[0];
    EXPECT_EQ(command.executable, "/usr/bin/security");
    EXPECT_EQ(command.error, ChildStream::captured);
    ASSERT_EQ(command.arguments.size(), 5U);
    EXPECT_TRUE(std::regex_match(command.arguments[4], path)) << command.arguments[4];
    paths.insert(command.arguments[4]);
    command.arguments.pop_back();
    EXPECT_EQ(command.arguments, (std::vector<std::string>{"add-trusted-cert", "-d", "-r", "trustRoot"}));
  }
  EXPECT_EQ(paths.size(), 20U);
}

TEST(DeviceCATrust, EveryFailedStepHasItsMessage) {
  const PlatformError missing{posixErrorDomain, ENOENT, "No such file or directory"};
  struct Row {
    std::initializer_list<const char*> answers;
    FakeChildProcesses::Result tool;
    Outcome outcome;
  };
  const char* const noCertificate =
      "The Ostrel Agent background service did not return this Mac's device certificate. Reinstall the "
      "Ostrel "
      "Agent package if this keeps happening.";
  const char* const stillUntrusted =
      "macOS accepted the certificate but this Mac still doesn't trust it. Try again, or reinstall the "
      "Ostrel "
      "Agent package.";
  const Row rows[] = {
      {{R"({"error":"busy"})"},
       ChildResult{},
       {Kind::failed, "Couldn't confirm the device certificate is trusted: busy"}},
      {{R"({"ok":true})"}, ChildResult{}, {Kind::failed, noCertificate}},
      {{R"({"ok":true,"ca_trusted":"true","ca_cert_pem":7})"}, ChildResult{}, {Kind::failed, noCertificate}},
      {{pendingAnswer},
       std::unexpected(missing),
       {Kind::failed, "Couldn't ask macOS to trust the device certificate: No such file or directory"}},
      {{pendingAnswer}, ChildResult{1, "", "SecTrustSettings: canceled by the user."}, {Kind::cancelled}},
      {{pendingAnswer},
       ChildResult{1, "", "no keychain"},
       {Kind::failed, "macOS refused to trust the device certificate (security exited 1)."}},
      {{pendingAnswer, pendingAnswer}, ChildResult{0, ""}, {Kind::failed, stillUntrusted}},
      {{pendingAnswer, R"({"error":"gone"})"},
       ChildResult{0, ""},
       {Kind::failed, "Couldn't confirm the device certificate is trusted: gone"}},
  };
  for (const auto& row : rows) {
    Mac mac(row.answers, row.tool);
    EXPECT_EQ(mac.ensureTrusted(), row.outcome);
    EXPECT_EQ(mac.sockets.connections.size(), row.answers.size());
  }
}

TEST(DeviceCATrust, ARefusedConnectionNamesTheAction) {
  const std::string sentence =
      "Couldn't confirm the device certificate is trusted: Only an administrator account can ";
  const std::string advice = ". Log in as an admin, or ask your administrator to run this.";
  Mac mac({});
  mac.sockets.connectError = {EACCES};
  EXPECT_EQ(mac.ensureTrusted(),
            (Outcome{Kind::failed, sentence + "trust this Mac's device certificate" + advice}));
  Mac later({pendingAnswer});
  later.children.answer = [&](const ChildCommand&) {
    later.sockets.connectError = {EACCES};
    return ChildResult{0, ""};
  };
  EXPECT_EQ(later.ensureTrusted(),
            (Outcome{Kind::failed, sentence + "confirm the device certificate is trusted" + advice}));
}

TEST(DeviceCATrust, NoToolRunsWhenTheFileCannotBeWritten) {
  Mac full({pendingAnswer});
  full.files.writeError = PlatformError{posixErrorDomain, ENOSPC, "No space left on device"};
  EXPECT_EQ(
      full.ensureTrusted(),
      (Outcome{Kind::failed, "Couldn't stage the device certificate for macOS: No space left on device"}));
  EXPECT_TRUE(full.children.commands.empty());
}

TEST(DeviceCATrust, OnlyTheMessageOfADismissedDialogIsACancellation) {
  struct Row {
    std::string error;
    std::int32_t status;
    Kind kind;
  };
  const Row rows[] = {
      {"The authorization was canceled by the user.", 0, Kind::trusted},
      {"SecTrustSettingsSetTrustSettings: The authorization was CANCELED by the User.\n", 1, Kind::cancelled},
      {"\n cancelled by the user \n", 1, Kind::cancelled},
      {"\xff\xfe User canceled", 128, Kind::cancelled},
      {"The authorization was canceled.", 1, Kind::failed},
      {"user cancelled", 1, Kind::failed},
      {"", 1, Kind::failed},
      {"", 9, Kind::failed},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(outcomeOfSecurityTool({row.status, "", row.error}).kind, row.kind) << row.error;
  }
  EXPECT_EQ(outcomeOfSecurityTool({9, "", ""}).message,
            "macOS refused to trust the device certificate (security exited 9).");
}

}  // namespace
}  // namespace ostrel
