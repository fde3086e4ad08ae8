#include "OstrelAgent/Window/AgentWindowContent.hpp"

#include <gtest/gtest.h>

#include "OstrelAgent/Containers/ContainerDetector.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using builders::health;
using builders::healthy;
using Content = AgentWindowContent;

/// One window whose inputs a test changes.
struct Window {
  StatusPanelModel model = {};
  ContainersPage containers = {};
  PanelActionSet available = allPanelActions();

  explicit Window(Snapshot snapshot = healthy()) {
    model.snap = std::move(snapshot);
    model.hasReading = true;
  }

  Content content(AgentPage page) const {
    const auto times = builders::times();
    return agentWindowContent(page, {model, containers, builders::now, times, available});
  }

  template <class Body>
  Body body(AgentPage page) const {
    return std::get<Body>(content(page).body);
  }

  Content::Ecosystems ecosystems() const { return body<Content::Ecosystems>(AgentPage::ecosystems); }
  Content::EgressLock egressLock() const { return body<Content::EgressLock>(AgentPage::egressLock); }
  Content::Identity identity() const { return body<Content::Identity>(AgentPage::identity); }
  Content::Health health() const { return body<Content::Health>(AgentPage::health); }
  Content::Notifications notifications() const {
    return body<Content::Notifications>(AgentPage::notifications);
  }
};

/// "Enabled: Yes|Code: X|", with "[title]" behind a fact with a button.
std::string describe(const Content::Facts& facts) {
  std::string text;
  for (const auto& fact : facts) {
    text += fact.label + ": " + fact.value + fact.addition +
            (fact.button ? " [" + fact.button->title + "]" : "") + "|";
  }
  return text;
}

/// The words and marks beside the pages: "Ecosystems ok|…".
std::string sidebar(const Content& content) {
  std::string text = content.sidebar.header.word + "/" + content.sidebar.enrolment + "/";
  for (const auto& section : content.sidebar.sections) {
    for (const auto& item : section.items) {
      text += item.title + (item.state ? " " + std::string(nameOf(item.state->kind)) : "") + "|";
    }
  }
  return text;
}

TEST(AgentWindowContent, TheSidebarShowsTheStateOfEveryPage) {
  Window window;
  window.model.snap.caTrusted = false;
  EXPECT_EQ(sidebar(window.content(AgentPage::help)),
            "Protected/Enrolled/Ecosystems bad|Containers info|Egress lock ok|Identity ok|Health bad|"
            "Notifications|Help|");
  window.model.snap.tokenPresent = window.model.snap.enrolled = false;
  EXPECT_EQ(window.content(AgentPage::help).sidebar.enrolment, "Not enrolled");
}

TEST(AgentWindowContent, WithoutAReportDevicePagesShowThatAlone) {
  Window window;
  window.model.snap = {};
  window.model.snap.statusError = "agent status unavailable (exit 3)";
  for (const auto page :
       {AgentPage::ecosystems, AgentPage::egressLock, AgentPage::identity, AgentPage::health}) {
    const auto content = window.content(page);
    EXPECT_EQ(content.statusError, RowState::warn("agent status unavailable (exit 3)"));
    EXPECT_TRUE(std::holds_alternative<std::monostate>(content.body));
  }
  window.model = {};
  const auto containers = window.content(AgentPage::containers);
  EXPECT_EQ(containers.statusError, RowState::info("checking…"));
  EXPECT_TRUE(std::holds_alternative<ContainersPageContent>(containers.body));
  EXPECT_EQ(sidebar(containers),
            "Not reported//Ecosystems|Containers|Egress lock|Identity|Health|Notifications|Help|");
  EXPECT_FALSE(window.content(AgentPage::help).statusError);
}

TEST(AgentWindowContent, EcosystemsListWhatIsEnforcedAndWhatIsNot) {
  Window window;
  auto& snapshot = window.model.snap;
  snapshot.guardEcosystems[1].state = "off_by_policy";
  snapshot.policyDirectFlows = 37;
  EXPECT_EQ(describe(window.ecosystems().facts), "Enforced: npm and pypi|Flows sent direct by policy: 37|");
  EXPECT_EQ(window.ecosystems().rollup->state, RowState::ok("2 of 3 enforced"));
  EXPECT_EQ(window.ecosystems().offNote, Copy::offNote({"go"}, 37));

  snapshot.trustGaps = {{{"npm"}, "NODE_EXTRA_CA_CERTS"}};
  snapshot.uncoveredEcosystems = {"npm (NODE_EXTRA_CA_CERTS)"};
  EXPECT_EQ(describe(window.ecosystems().facts),
            "Enforced: pypi|Not covered: npm (NODE_EXTRA_CA_CERTS)|Flows sent direct by policy: 37|");

  snapshot.sysext = health("broken", "red", "SYSEXT_PROXY_DISABLED");
  const auto failed = window.ecosystems();
  EXPECT_EQ(failed.card->button->title, "Turn on network filter");
  EXPECT_FALSE(failed.rollup);
  EXPECT_EQ(failed.offNote, "");
  EXPECT_EQ(failed.facts[0].value, "No");
  for (const auto& row : failed.rows) EXPECT_EQ(row.state, RowState::info("")) << row.name;
  EXPECT_EQ(failed.rows[0].name, "go") << "the uncovered one does not come first";

  snapshot = healthy();
  snapshot.guardEcosystems.clear();
  EXPECT_EQ(window.ecosystems().noEcosystems, Copy::guardEcoNoReport.text());
  EXPECT_EQ(describe(window.ecosystems().facts), "Flows sent direct by policy: 0|");
}

TEST(AgentWindowContent, TheEgressLockIsEnforcedOnlyWhenItsCodeSaysSo) {
  Window window;
  auto& lock = window.model.snap.egressLock;
  const auto enforced = [&](const char* code) {
    lock.code = code;
    const auto facts = describe(window.egressLock().facts);
    const auto at = facts.find("Enforced: ");
    return at == facts.npos ? std::string() : facts.substr(at + 10, facts.find('|', at) - at - 10);
  };
  for (const auto* code : {"EGRESS_LOCK_ENFORCING", "EGRESS_LOCK_PARTIAL"}) EXPECT_EQ(enforced(code), "Yes");
  for (const auto* code : {"EGRESS_LOCK_NOT_CONFIGURED", "EGRESS_LOCK_PROVIDER_STOPPED",
                           "EGRESS_LOCK_PERMITS_NOTHING", "EGRESS_LOCK_AWAITING_ASSERTION"}) {
    EXPECT_EQ(enforced(code), "No") << code;
  }
  for (const auto* code : {"EGRESS_LOCK_UNOBSERVABLE", "EGRESS_LOCK_UNREPORTED",
                           "EGRESS_LOCK_PROVIDER_FAILED", "EGRESS_LOCK_PROVIDER_SILENT", "", "NEW_CODE"}) {
    EXPECT_EQ(enforced(code), "") << code;
  }
  lock = health("broken", "yellow", "EGRESS_LOCK_PARTIAL");
  lock.selfHealing = true;
  lock.expectedClearBy = builders::now + 16min;
  EXPECT_EQ(describe(window.egressLock().facts),
            "Enabled: Yes|Enforced: Yes|Code: EGRESS_LOCK_PARTIAL|Clears on its own: Yes|"
            "Expected to clear by: 10:16 AM|");
  lock = health("");
  window.model.snap.egressLockEnabled = false;
  EXPECT_EQ(window.egressLock().card.button->title, "Enable egress lock…");
  EXPECT_EQ(describe(window.egressLock().facts), "Enabled: No|Clears on its own: No|");
}

TEST(AgentWindowContent, IdentityJoinsDeviceCheckInAndVersion) {
  Window window;
  auto& snapshot = window.model.snap;
  EXPECT_EQ(describe(window.identity().device),
            "Enrolled: Yes|Identity: ost_…9f|Token: ost_…9f|Token managed by the organization: No|"
            "Managed by MDM: No|");
  EXPECT_EQ(describe(window.identity().checkin), "Last check-in: 5 min ago [Check now]|");
  EXPECT_EQ(describe(window.identity().version), "Version: 2.4.0|");

  snapshot.lastCheckinError = "the service refused";
  snapshot.update = StatusReport::Update{};
  snapshot.update->state = "eol";
  snapshot.update->latestVersion = "4.13.0";
  snapshot.update->minimumSupportedVersion = "4.6.0";
  window.model.checkinInFlight = window.model.updateInFlight = true;
  window.model.checkinNotice = "Skipped";
  const auto page = window.identity();
  EXPECT_EQ(page.checkin[0].kind, RowState::Case::warn);
  EXPECT_FALSE(page.checkin[0].button->isEnabled);
  EXPECT_EQ(page.checkin[1].value, "the service refused");
  EXPECT_EQ(page.notice, "Skipped");
  EXPECT_EQ(describe(page.version),
            "Version: 2.4.0|Update: Update required · 4.13.0|Minimum supported version: 4.6.0|");
  EXPECT_EQ(page.installing, Copy::updateInstalling.text());
  window.model.updateInFlight = false;
  EXPECT_TRUE(window.identity().version[1].button);
  snapshot.update->state = "current";
  EXPECT_EQ(describe(window.identity().version), "Version: 2.4.0|Minimum supported version: 4.6.0|");
  window.available = {};
  EXPECT_FALSE(window.identity().checkin[0].button);
}

TEST(AgentWindowContent, HealthOpensWhatWantsAttention) {
  Window window;
  for (const auto& component : window.health().components) EXPECT_FALSE(component.startsOpen);
  auto& snapshot = window.model.snap;
  snapshot.sysext = health("broken", "red", "SYSEXT_PROXY_DISABLED");
  snapshot.captureSet = health("unknown", "info", "CAPTURE_SET_X");
  snapshot.deviceCA = health("broken", "red", "CA_UNTRUSTED");
  snapshot.caTrusted = false;
  const auto page = window.health();
  EXPECT_EQ(describe(page.facts),
            "Daemon listening: Yes|Network extension active: Yes|Device certificate trusted: No|");
  EXPECT_EQ(page.facts[2].kind, RowState::Case::bad);
  std::string shown;
  for (const auto& component : page.components) {
    shown += component.card.title + (component.startsOpen ? "+" : "") +
             (component.card.button ? " [" + component.card.button->title + "]" : "") + "|";
  }
  EXPECT_EQ(shown,
            "Capture+ [Turn on network filter]|Credential|Runtime trust|Capture set|"
            "Device CA+ [Re-trust CA…]|");
  EXPECT_EQ(describe(page.components[0].facts), "Code: SYSEXT_PROXY_DISABLED|Clears on its own: No|");
}

TEST(AgentWindowContent, NotificationsListTheRuntimesOfThisMacAndTheWanted) {
  Window window;
  auto master = window.notifications().master;
  EXPECT_FALSE(master.isEnabled || master.isOn);
  EXPECT_EQ(window.notifications().authorization, "");
  EXPECT_EQ(window.notifications().caption, "");

  window.containers.notify = {"minikube", "Kata"};
  EXPECT_EQ(window.notifications().runtimes.size(), 1U)
      << "what is wanted is listed before the first reading";
  ContainerTrustReading::Detected detected;
  detected.running = {"UTM"};
  detected.installed = {"Docker"};
  window.containers.reading = {ContainerBlock{{"Colima"}, std::nullopt}, detected};
  window.containers.notificationAuthorization = NotificationAuthorization::denied;
  const auto page = window.notifications();
  std::string runtimes;
  for (const auto& runtime : page.runtimes) runtimes += (runtime.isOn ? "+" : "") + runtime.label + "|";
  EXPECT_EQ(runtimes, "Docker|Colima|+minikube|UTM|");
  EXPECT_TRUE(page.master.isOn && page.master.isEnabled);
  EXPECT_EQ(page.authorization, Copy::notificationsDenied.text());
  EXPECT_EQ(page.authorizationButton, PageButton::of(PageAction::openNotificationSettings));
}

TEST(AgentWindowContent, HelpShowsTheWorkAndItsNotices) {
  Window window;
  window.model.sendDiagnosticsInFlight = true;
  window.model.diagnosticsNotice = "Diagnostics copied.";
  window.model.diagnosticsSentAt = builders::now + 12min;
  const auto page = window.body<Content::Help>(AgentPage::help);
  EXPECT_TRUE(page.buttons[0].isEnabled);
  EXPECT_FALSE(page.buttons[1].isEnabled);
  EXPECT_EQ(page.notices, (std::vector{RowState::info("Diagnostics copied."),
                                       RowState::ok("Sent to your admin at 10:12 AM")}));
}

}  // namespace
}  // namespace ostrel
