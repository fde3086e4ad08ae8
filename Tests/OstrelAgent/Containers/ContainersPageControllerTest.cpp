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
    controller->start([this](Strings names) { running.push_back(std::move(names)); },
                      [this] { shown = controller->page().content(); });
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
    controller->setShown(true);
    settle();
  }

  const ContainersPageContent::Detail& selected(const std::string& name) const {
    controller->select(name);
    return *shown->detail;
  }

  FakeHost host;
  InterruptedProcesses processes;
  std::shared_ptr<ContainersPageController> controller = std::make_shared<ContainersPageController>(
      ContainersPageController::Services{host.pasteboard, host.userNotifications, host.mainQueue, host.log},
      ContainersPageController::Collaborators{
          .reader = std::make_shared<ContainerReader>(
              ContainerReader::Services{host.mainQueue, host.backgroundQueue},
              ContainerDetector::Services{host.workspace, processes, host.files, host.userAccount}),
          .preferences = std::make_shared<ContainerTrustPreferences>(host.userDefaults)});
  std::vector<Strings> running;
  std::optional<ContainersPageContent> shown;  ///< at the latest change
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
  EXPECT_FALSE(shown) << "none of that is on the page";
  EXPECT_TRUE(host.files.reads.empty());
}

TEST_F(ContainersPageControllerTest, SaysThatItIsCheckingUntilTheFirstReading) {
  controller->setShown(true);
  host.mainQueue.runAll();
  EXPECT_EQ(shown->checking, "checking…");
  settle();
  EXPECT_EQ(shown->checking, "");
}

TEST_F(ContainersPageControllerTest, StartsNoReadingWhileOneHangs) {
  processes.interruption = [this] { controller->refresh(); };
  refresh();
  EXPECT_EQ(processes.readings, 1);
  refresh();
  EXPECT_EQ(processes.readings, 2);
}

TEST_F(ContainersPageControllerTest, OpenedDuringAReadingOfRunningRuntimesGetsItsOwn) {
  processes.interruption = [this] { controller->setShown(true); };
  refresh();
  ASSERT_TRUE(shown);
  EXPECT_EQ(shown->sections.size(), 3U);
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
  EXPECT_EQ(shown->sections.at(0).rows.size(), 1U);
  controller->publish(std::nullopt);
  EXPECT_TRUE(shown->sections.at(0).rows.empty());
}

TEST_F(ContainersPageControllerTest, MarksTheButtonThatCopiedForTwoSeconds) {
  const auto isCopied = [this] { return shown->detail->copyPath.copied == "Copied"; };
  open();
  (void)selected("UTM");
  EXPECT_TRUE(controller->copy(ContainersCopy::bundlePath));
  EXPECT_EQ(host.pasteboard.content, bundle);
  host.mainQueue.advance(1500ms);
  EXPECT_TRUE(controller->copy(ContainersCopy::bundlePath));
  host.mainQueue.advance(1999ms);
  EXPECT_TRUE(isCopied()) << "the first copy's time has ended, the second's has not";
  host.mainQueue.advance(1ms);
  EXPECT_FALSE(isCopied());

  EXPECT_TRUE(controller->copy(ContainersCopy::bundlePath));
  (void)selected("UTM");
  EXPECT_TRUE(isCopied()) << "it is selected already";
  (void)selected("QEMU");
  EXPECT_FALSE(isCopied());
  EXPECT_TRUE(controller->copy(ContainersCopy::bundlePath));
  controller->choose(ContainerSnippet::compose);
  EXPECT_FALSE(isCopied());
  EXPECT_TRUE(controller->copy(ContainersCopy::snippet));
  EXPECT_EQ(host.pasteboard.content, textOf(ContainerSnippet::compose));
  controller->select("");
  EXPECT_FALSE(shown->detail);

  EXPECT_TRUE(controller->copy(ContainersCopy::bundlePath));
  host.pasteboard.refuses = true;
  (void)selected("UTM");
  EXPECT_FALSE(controller->copy(ContainersCopy::bundlePath));
  EXPECT_FALSE(isCopied());
  controller->copy(ContainersCopy::bundlePath);
  controller.reset();
  host.mainQueue.advance(2s);
}

TEST_F(ContainersPageControllerTest, CopiesTheGuestCommandOfTheLatestReading) {
  host.files.put(bundle, "MII");
  open();
  EXPECT_FALSE(controller->copy(ContainersCopy::guestCommand)) << "none is selected";
  (void)selected("UTM");
  host.files.readError = PlatformError{posixErrorDomain, EACCES, "Permission denied"};
  EXPECT_TRUE(controller->copy(ContainersCopy::guestCommand)) << "as it is shown";
  EXPECT_EQ(host.pasteboard.content, ContainerRuntime::guestCommand("MII"));
  host.pasteboard.content.reset();
  host.files.put(bundle, "MII 2");
  refresh();
  EXPECT_FALSE(controller->copy(ContainersCopy::guestCommand));
  EXPECT_EQ(host.pasteboard.content, std::nullopt);
}

TEST_F(ContainersPageControllerTest, ASelectedRuntimeMayMoveToAnotherSection) {
  open();
  (void)selected("Colima");
  controller->publish(ContainerBlock{{"Colima"}, std::nullopt});
  EXPECT_TRUE(shown->sections.at(0).rows.at(0).isSelected);
  EXPECT_FALSE(shown->detail->blocked.empty());
  controller->publish(std::nullopt);
  EXPECT_EQ(shown->detail->name, "Colima");
}

TEST_F(ContainersPageControllerTest, ShowsANotificationSwitchAsItIsStored) {
  open();
  EXPECT_FALSE(selected("Podman").isNotifyOn);
  EXPECT_TRUE(controller->setNotify("Podman", true));
  EXPECT_TRUE(shown->detail->isNotifyOn);
  host.userDefaults.writeError = PlatformError{posixErrorDomain, ENOSPC, "No space left on device"};
  EXPECT_FALSE(controller->setNotify("Podman", false));
  EXPECT_TRUE(shown->detail->isNotifyOn);
  EXPECT_EQ(host.log.lines,
            Strings{"ostrel: could not store the notification preference: No space left on device"});
}

TEST_F(ContainersPageControllerTest, SwitchesTheNotificationsOfAllListedRuntimes) {
  EXPECT_FALSE(controller->setAllNotify(true)) << "none is listed";
  host.workspace.installed = {"com.docker.docker"};
  processes.processes = {"colima"};
  open();
  (void)selected("Colima");
  EXPECT_TRUE(controller->setNotify("Podman", true));
  EXPECT_TRUE(controller->setAllNotify(true));
  EXPECT_EQ(controller->page().notify, (std::set<std::string>{"Colima", "Docker", "Podman"}));
  EXPECT_TRUE(shown->detail->isNotifyOn);
  EXPECT_TRUE(controller->setAllNotify(false));
  EXPECT_EQ(controller->page().notify, std::set<std::string>());
  EXPECT_FALSE(shown->detail->isNotifyOn);
}

TEST_F(ContainersPageControllerTest, SaysWhyNoNotificationAppearsOnceThatIsKnown) {
  using enum NotificationAuthorization;
  constexpr auto provisional = static_cast<NotificationAuthorization>(3);
  const auto off = "Notifications for Ostrel Agent are off in macOS.";
  open();
  (void)selected("Podman");
  for (const auto& [answer, text] :
       {std::pair(denied, off), std::pair(authorized, ""),
        std::pair(notDetermined, "macOS has not asked you about notifications for Ostrel Agent yet."),
        std::pair(provisional, ""), std::pair(denied, off)}) {
    host.userNotifications.authorization = answer;
    refresh();
    EXPECT_EQ(shown->authorization, text);
  }
  controller->setShown(false);
  controller->setShown(true);
  EXPECT_EQ(shown->authorization, "") << "what was known may be outdated";
  settle();
  EXPECT_EQ(shown->authorization, off);
}

}  // namespace
}  // namespace ostrel
