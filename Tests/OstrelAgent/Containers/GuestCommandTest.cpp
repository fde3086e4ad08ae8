#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "OstrelAgent/Containers/ContainerRuntime.hpp"
#include "OstrelAgent/Containers/ContainerSnippet.hpp"
#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

const std::string debianAnchors = "/usr/local/share/ca-certificates";
const std::string redHatAnchors = "/etc/pki/ca-trust/source/anchors";

/// A guest system in a temporary folder: commands find no other programs than its own, and its sudo puts the
/// folders of certificates beneath the temporary one.
struct Guest {
  explicit Guest(const std::string& refreshCommand) {
    program("sudo", "for argument; do\n  shift\n  set -- \"$@\" \"$(printf %s \"$argument\" | sed 's|" +
                        debianAnchors + "|" + root.path() + "&|; s|" + redHatAnchors + "|" + root.path() +
                        "&|')\"\ndone\nexec \"$@\"\n");
    program(refreshCommand, "echo refreshed >>" + root / "refreshed\n");
    for (const std::string tool : {"sh", "cat", "mkdir", "sed"}) {
      std::filesystem::create_symlink("/bin/" + tool, root / "bin/" + tool);
    }
  }

  void program(const std::string& name, const std::string& script) const {
    std::filesystem::permissions(root.write("bin/" + name, "#!/bin/sh\n" + script),
                                 std::filesystem::perms::owner_all);
  }

  Ran paste(const std::string& command) const {
    return run({"/bin/sh", "-c", "PATH=" + root / "bin\n" + command}, {});
  }

  TemporaryFolder root;
};

TEST(GuestCommand, InstallsTheBundleUnchangedInGuestsOfBothKinds) {
  const std::string pem =
      "# $HOME ${d} $(reboot) `reboot` \"quoted\" \\ \\n %s & |\n"
      "-----BEGIN CERTIFICATE-----\n  MII\n\nMII\n-----END CERTIFICATE----- \\";
  const auto command = ContainerRuntime::guestCommand("\n\n" + pem + " \n\n");
  ASSERT_TRUE(command);
  for (const auto& [refresh, anchor] : {std::pair("update-ca-certificates", debianAnchors + "/ostrel.crt"),
                                        std::pair("update-ca-trust", redHatAnchors + "/ostrel.pem")}) {
    const Guest guest(refresh);
    const auto ran = guest.paste(*command);
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.output + ran.error, "");
    EXPECT_EQ(guest.root.read(anchor.substr(1)), pem + "\n");
    EXPECT_EQ(guest.root.read("refreshed"), "refreshed\n");
  }
}

TEST(ContainerSnippet, ComposeIsYaml) {
  const auto ran =
      run({PYTHON, "-c", "import json, sys, yaml; json.dump(yaml.safe_load(sys.stdin), sys.stdout)"}, {},
          textOf(ContainerSnippet::compose));
  EXPECT_EQ(ran.error, "");
  EXPECT_EQ(nlohmann::json::parse(ran.output, nullptr, false), nlohmann::json::parse(R"({"services": {"app": {
    "volumes": ["/Library/Application Support/ostrel-agent-endpoint-trust/bundle.pem:/ostrel/trust.pem:ro"],
    "environment": {"SSL_CERT_FILE": "/ostrel/trust.pem", "NODE_EXTRA_CA_CERTS": "/ostrel/trust.pem",
                    "REQUESTS_CA_BUNDLE": "/ostrel/trust.pem"}}}})"));
}

}  // namespace
}  // namespace ostrel
