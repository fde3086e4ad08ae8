#include "OstrelAgent/Containers/ContainersPageController.hpp"

#include <gtest/gtest.h>

#include "OstrelAgent/Containers/DockerFileSharing.hpp"
#include "OstrelAgent/Containers/TrustBundle.hpp"
#include "Tests/Fakes/FakeHost.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;

using Strings = std::vector<std::string>;

const std::string bundle(trustbundle::file);

/// A process table during whose reading the test can act.
struct InterruptedProcesses final : RunningProcesses {
  Strings names() const override {
    ++readings;
    if (interruption) std::exchange(interruption, {})();
    return processes;
  }

  Strings processes;
  mutable int readings = 0;
  mutable std::function<void()> interruption;
};

struct ContainersPageControllerTest : testing::Test {
  ContainersPageControllerTest() {
    controller->start([this](Strings names) { running.push_back(std::move(names)); });
  }

  void settle() {
    host.backgroundQueue.runAll();
    host.mainQueue.runAll();
  }

  void refresh() {
    controller->refresh();
    settle();
  }

  void open() {
    user.opened();
    settle();
  }

  const ContainersPageContent& shown() const { return host.containersScreen.shown.back(); }

  const ContainersPageContent::Detail& selected(const std::string& name) const {
    user.selected(name);
    return *shown().detail;
  }

  FakeHost host;
  const ContainersScreenEvents& user = host.containersScreen.user;
  InterruptedProcesses processes;
  std::shared_ptr<ContainersPageController> controller = std::make_shared<ContainersPageController>(
      ContainersPageController::Services{host.containersScreen, host.pasteboard, host.userNotifications,
                                         host.log},
      ContainersPageController::Collaborators{
          .reader = std::make_shared<ContainerReader>(
              ContainerReader::Services{host.mainQueue, host.backgroundQueue},
              ContainerDetector::Services{host.workspace, processes, host.files, host.userAccount}),
          .preferences = std::make_shared<ContainerTrustPreferences>(host.userDefaults)});
  std::vector<Strings> running;
};

TEST_F(ContainersPageControllerTest, ReportsTheRunningRuntimesWhenTheirNamesChange) {
  refresh();
  processes.processes = {"limactl", "colima", "colima"};
  refresh();
  host.workspace.applications = {{"com.utmapp.UTM", Date()}};
  refresh();
  host.workspace.applications[0].launchDate = Date() + 1h;
  refresh();
  EXPECT_EQ(running, (std::vector<Strings>{{"Colima", "Lima"}, {"Colima", "Lima", "UTM"}}));
  EXPECT_TRUE(host.containersScreen.shown.empty());
  EXPECT_TRUE(host.files.reads.empty());
}

TEST_F(ContainersPageControllerTest, SaysThatItIsCheckingUntilTheFirstReading) {
  user.opened();
  host.mainQueue.runAll();
  EXPECT_EQ(shown().checking, "checking…");
  settle();
  EXPECT_EQ(shown().checking, "");
}

TEST_F(ContainersPageControllerTest, StartsNoReadingWhileOneHangs) {
  processes.interruption = [this] { controller->refresh(); };
  refresh();
  EXPECT_EQ(processes.readings, 1);
  refresh();
  EXPECT_EQ(processes.readings, 2);
}

TEST_F(ContainersPageControllerTest, OpenedDuringAReadingOfRunningRuntimesGetsItsOwn) {
  processes.interruption = [this] { user.opened(); };
  refresh();
  ASSERT_FALSE(host.containersScreen.shown.empty());
  EXPECT_EQ(shown().sections.size(), 3U);
}

TEST_F(ContainersPageControllerTest, ReadsFilesAgainOnlyWhenTheyChanged) {
  const auto docker = DockerFileSharing::settingsFiles("/Users/robin")[0];
  host.files.put(bundle, "MII");
  host.files.put(docker, R"({"filesharingDirectories": ["/"]})");
  host.workspace.applications = {{"com.docker.docker", Date()}};
  open();
  refresh();
  EXPECT_EQ(host.files.reads[bundle] + host.files.reads[docker], 2);
  EXPECT_EQ(selected("Docker").chips.size(), 1U);

  // This bundle cannot be used, but its time counts.
  host.files.put(bundle, "MII'");
  host.files.files[bundle].stamp.modified = Date() + 1h;
  host.files.put(docker, R"({"filesharingDirectories": []})");
  refresh();
  EXPECT_FALSE(selected("UTM").guest);
  EXPECT_EQ(selected("Docker").chips.at(0).kind, ContainerChip::restart);
  EXPECT_NE(selected("Docker").state.find("does not cover"), std::string::npos);

  host.files.put(bundle, "MII 2");
  refresh();
  EXPECT_TRUE(selected("UTM").guest);
  host.files.put(bundle, std::string(trustbundle::maxBytes + 1, 'x'));
  refresh();
  EXPECT_EQ(host.files.reads[bundle], 3);
  EXPECT_FALSE(selected("UTM").guest);

  host.files.put(bundle, "MII 3");
  host.files.readError = PlatformError{posixErrorDomain, EACCES, "Permission denied"};
  refresh();
  EXPECT_FALSE(selected("UTM").guest);
  host.files.readError.reset();
  refresh();
  EXPECT_TRUE(selected("UTM").guest) << "allowed later";
}

TEST_F(ContainersPageControllerTest, KeepsABlockOverReadingsAndIgnoresUnknownRuntimes) {
  open();
  controller->publish(ContainerBlock{{"Kata", "Docker"}, std::nullopt});
  processes.processes = {"colima"};
  refresh();
  EXPECT_EQ(shown().sections.at(0).rows.size(), 1U);
  controller->publish(std::nullopt);
  EXPECT_TRUE(shown().sections.at(0).rows.empty());
}

TEST_F(ContainersPageControllerTest, MarksTheButtonThatCopied) {
  host.files.put(bundle, "MII");
  open();
  EXPECT_FALSE(user.copyPressed(ContainersCopy::setupCommand));
  EXPECT_EQ(host.pasteboard.content, std::nullopt);
  (void)selected("UTM");
  EXPECT_TRUE(user.copyPressed(ContainersCopy::guestCommand));
  EXPECT_EQ(host.pasteboard.content, ContainerRuntime::guestCommand("MII"));
  EXPECT_EQ(shown().detail->guest->button.copied, "Copied");
  EXPECT_EQ(selected("QEMU").guest->button.copied, "");
  EXPECT_TRUE(user.copyPressed(ContainersCopy::bundlePath));
  EXPECT_EQ(host.pasteboard.content, bundle);
  user.snippetChosen(ContainerSnippet::compose);
  EXPECT_TRUE(user.copyPressed(ContainersCopy::snippet));
  EXPECT_EQ(host.pasteboard.content, textOf(ContainerSnippet::compose));
}

TEST_F(ContainersPageControllerTest, ShowsANotificationSwitchAsItIsStored) {
  open();
  EXPECT_FALSE(selected("Podman").isNotifyOn);
  EXPECT_TRUE(user.notifySwitched("Podman", true));
  EXPECT_TRUE(shown().detail->isNotifyOn);
  host.userDefaults.writeError = PlatformError{posixErrorDomain, ENOSPC, "No space left on device"};
  EXPECT_FALSE(user.notifySwitched("Podman", false));
  EXPECT_TRUE(shown().detail->isNotifyOn);
  EXPECT_EQ(host.log.lines,
            Strings{"ostrel: could not store the notification preference: No space left on device"});
}

TEST_F(ContainersPageControllerTest, SaysWhyNoNotificationAppears) {
  using enum NotificationAuthorization;
  open();
  (void)selected("Podman");
  for (const auto& [answer, text] :
       {std::pair(denied, "Notifications for Ostrel Agent are off in macOS."), std::pair(authorized, ""),
        std::pair(notDetermined, "macOS has not asked you about notifications for Ostrel Agent yet.")}) {
    host.userNotifications.authorization = answer;
    refresh();
    EXPECT_EQ(shown().authorization, text);
  }
}

}  // namespace
}  // namespace ostrel
