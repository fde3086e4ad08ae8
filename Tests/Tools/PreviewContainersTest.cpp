#include "Tools/PreviewContainers.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"
#include "Tools/PreviewContainersJson.hpp"

namespace ostrel {
namespace {

using nlohmann::json;

std::string situation(const std::string& name) { return contentOf(SITUATIONS "/" + name + ".json"); }

nlohmann::ordered_json shown(const json& situation) {
  const auto page = readContainersPage(situation.dump());
  return page ? containersJson(*page) : nlohmann::ordered_json(page.error().description());
}

/// "Installed: >OrbStack restart running, Docker installed" for each section that has rows.
std::string sectionLines(const ContainersPageContent& content) {
  std::string lines;
  for (const auto& section : content.sections) {
    if (section.rows.empty()) continue;
    lines += section.caption + ":";
    for (const auto& row : section.rows) {
      lines +=
          (&row == &section.rows.front() ? " " : ", ") + std::string(row.isSelected ? ">" : "") + row.name;
      for (const auto& chip : row.chips) lines += " " + chip.text;
    }
    lines += "\n";
  }
  return lines;
}

TEST(PreviewContainers, ReadsEverySituationOfTheFolder) {
  struct Row {
    std::string name;
    std::string sections;  ///< the first lines
    std::string state;
  };
  const std::string docker = "Installed: >Docker running\nNot installed: OrbStack, ";
  const std::string pulls = "The runtime trusts the device certificate; containers inside it don't yet.";
  const Row rows[] = {
      {"all-fifteen",
       "Blocked: Colima blocked running\n"
       "Installed: Docker running, >QEMU running, OrbStack installed, Rancher Desktop installed, "
       "Lima installed, Podman installed, Multipass installed, minikube installed, vfkit installed, "
       "UTM installed, Parallels installed, VMware Fusion installed, VirtualBox installed, "
       "Apple Container installed\n",
       "The guest system is yours to configure; the command below is pasted inside it. Started by minikube, "
       "Podman machine, Multipass or CRC: use that tool's row."},
      {"blocked-and-running",
       "Blocked: >Podman blocked running\nInstalled: Docker running, UTM installed\nNot installed: "
       "OrbStack, ",
       "Its VM keeps its own store; the command below installs the bundle there and restarts the VM. "
       "A container in it rejected the device certificate recently."},
      {"docker-not-shared", docker,
       pulls +
           " Its file sharing does not cover the bundle's folder yet: add it under Settings › Resources › "
           "File sharing, or the mount below fails."},
      {"docker-shared", docker, pulls + " Its file sharing covers the bundle's folder."},
      {"docker-sharing-unknown", docker,
       pulls + " To mount the bundle, add its folder under Settings › Resources › File sharing."},
      {"needs-restart",
       "Installed: >OrbStack restart running, Rancher Desktop running, Colima running\n"
       "Not installed: Docker, Lima, ",
       pulls + " Restart it to pick up the device certificate."},
      {"nothing-installed",
       "Not installed: Docker, OrbStack, Rancher Desktop, Colima, Lima, Podman, Multipass, minikube, vfkit, "
       "QEMU, UTM, Parallels, VMware Fusion, VirtualBox, Apple Container\n",
       "Select a runtime"},
      {"unreadable-bundle", "Installed: >UTM running\nNot installed: Docker, ",
       "The guest system is yours to configure; the bundle could not be read to build a command for it."},
  };
  for (const auto& row : rows) {
    const auto page = readContainersPage(situation(row.name));
    ASSERT_TRUE(page) << page.error().description() << row.name;
    const auto content = page->content();
    EXPECT_TRUE(sectionLines(content).starts_with(row.sections)) << row.name << "\n" << sectionLines(content);
    EXPECT_EQ(content.detail ? content.detail->state : content.noSelection, row.state) << row.name;
  }
  using Files = std::filesystem::directory_iterator;
  EXPECT_EQ(std::distance(Files(SITUATIONS), Files()), std::ssize(rows));
}

TEST(PreviewContainers, JsonHoldsTheWholeTextOfEachButton) {
  auto document = json::parse(situation("all-fifteen"));
  const auto guest = shown(document);
  EXPECT_NE(guest["detail"]["guest"]["shown"].get<std::string>().find("2 certificates"), std::string::npos);
  const auto copied = guest["detail"]["guest"]["copies_text"].get<std::string>();
  const auto pem = document["bundle_pem"].get<std::string>();
  EXPECT_NE(copied.find("\n" + pem + "EOF\n"), std::string::npos) << copied;
  EXPECT_EQ(guest["detail"]["setup"], nullptr);
  EXPECT_EQ(guest["detail"]["notify"].dump(),
            R"({"label":"Notify me when a container in QEMU is blocked","on":true})");
  EXPECT_EQ(guest["authorization"], "Notifications for Ostrel Agent are off in macOS.");
  EXPECT_EQ(guest["inside"]["chosen"], "compose");
  EXPECT_TRUE(guest["inside"]["snippet"]["copies_text"].get<std::string>().starts_with("services:\n"));

  document["selected"] = "minikube";
  const auto setup = shown(document);
  EXPECT_EQ(setup["detail"]["guest"], nullptr);
  EXPECT_TRUE(setup["detail"]["setup"]["copies_text"].get<std::string>().ends_with(" --embed-certs"));
  EXPECT_EQ(setup["sections"][0].dump(),
            R"({"caption":"Blocked","rows":[{"name":"Colima","chips":[{"kind":"blocked","text":"blocked"},)"
            R"({"kind":"running","text":"running"}],"selected":false}]})");
  document["selected"] = "Unknown";
  EXPECT_EQ(shown(document)["detail"], nullptr);
  EXPECT_EQ(shown(document)["no_selection"], "Select a runtime");
}

TEST(PreviewContainers, UnknownRuntimesHaveNoRowAndNullIsAMissingKey) {
  const auto nothing = shown(json::object());
  EXPECT_EQ(shown({{"running", {{"Unknown", nullptr}}}, {"installed", {"Other"}}, {"notify", {"Third"}}}),
            nothing);
  for (const auto* key : {"block", "running", "installed", "bundle_pem", "notification_authorization",
                          "docker_shares_library", "snippet"}) {
    EXPECT_EQ(shown({{key, nullptr}}), nothing) << key;
  }
}

TEST(PreviewContainers, AFaultIsReportedWithItsPlace) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "the document "},
      {"[]", "the document is not an object"},
      {R"({"running":["Docker"]})", "running is not an object"},
      {R"({"running":{"Docker":"today"}})", "running.Docker is not a time such as 2025-01-02T03:04:05Z"},
      {R"({"running":{"Docker":1735783445}})", "running.Docker is not a time such as 2025-01-02T03:04:05Z"},
      {R"({"block":{"clears_by":""}})", "block.clears_by is not a time such as 2025-01-02T03:04:05Z"},
      {R"({"block":{"runtimes":["Docker",1]}})", "block.runtimes[1] is not a text"},
      {R"({"ca_published_at":"2025-02-30T00:00:00Z"})", "ca_published_at is not a time such as "},
      {R"({"docker_shares_library":"yes"})", "docker_shares_library is not true or false"},
      {R"({"notification_authorization":"Denied"})",
       "notification_authorization is not one of authorized, denied, notDetermined"},
      {R"({"snippet":""})", "snippet is not one of dockerRun, compose, dockerfile, envFile"},
  };
  for (const auto& [document, fault] : rows) {
    const auto page = readContainersPage(document);
    ASSERT_FALSE(page) << document;
    EXPECT_TRUE(page.error().description().starts_with(fault)) << page.error().description();
  }
}

TEST(PreviewContainers, TheProgramShowsEachPartOfThePageOnce) {
  const auto preview = [](std::vector<std::string> arguments, std::string_view input = {}) {
    arguments.insert(arguments.begin(), {PREVIEW, "--containers"});
    return run(arguments, {}, input);
  };
  const std::string file = SITUATIONS "/blocked-and-running.json";
  const auto text = preview({file, "--language", "de"});
  EXPECT_EQ(text.status, 0) << text.error;
  std::size_t at = 0;
  for (const auto* part : {"Blockiert\n", "\n\nNicht installiert\n", "\n\nPodman · blockiert · läuft\n",
                           "blockiert wird\n\nIn Containern\n", "\n    docker run "}) {
    at = text.output.find(part, at);
    ASSERT_NE(at, std::string::npos) << part << "\n" << text.output;
    EXPECT_EQ(text.output.find(part, at + 1), std::string::npos) << part;
  }
  EXPECT_EQ(preview({"--language", "de"}, contentOf(file)).output, text.output);
  EXPECT_EQ(json::parse(preview({"--json", "-"}, contentOf(file)).output)["detail"]["name"], "Podman");

  const auto fault = preview({"--json"}, R"({"snippet":"podman"})");
  EXPECT_EQ(fault.status, 1);
  EXPECT_EQ(fault.error, "ostrel-preview: snippet is not one of dockerRun, compose, dockerfile, envFile\n");
  EXPECT_TRUE(json::parse(fault.output).contains("error")) << fault.output;
  for (const std::vector<std::string>& others : {std::vector<std::string>{"--png", "x"},
                                                 {"--alert", "install"},
                                                 {"--onboarding", "repair"},
                                                 {file, file}}) {
    EXPECT_EQ(preview(others).status, 2) << others[0];
  }
}

}  // namespace
}  // namespace ostrel
