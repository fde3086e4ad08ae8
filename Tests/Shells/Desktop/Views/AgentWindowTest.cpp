#include <QClipboard>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <memory>

#include "OstrelAgent/Containers/ContainerDetector.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "Shells/Desktop/Views/Common/Picture.hpp"
#include "Shells/Desktop/Views/Window/AgentViewWindow.hpp"
#include "Tests/OstrelAgent/SnapshotBuilders.hpp"
#include "Tests/Shells/Desktop/Views/QtMessages.hpp"
#include "Tests/Shells/Desktop/Views/ViewTest.hpp"

namespace ostrel {
namespace {

using namespace std::chrono_literals;
using builders::health;
using builders::healthy;
using Strings = std::vector<std::string>;

constexpr std::array allPages = {AgentPage::ecosystems, AgentPage::containers, AgentPage::egressLock,
                                 AgentPage::identity,   AgentPage::health,     AgentPage::notifications,
                                 AgentPage::help};

/// The window of a Mac that a test changes.
struct Mac {
  StatusPanelModel model = {};
  ContainersPage containers = {};

  explicit Mac(Snapshot snapshot = healthy()) {
    model.snap = std::move(snapshot);
    model.hasReading = true;
    containers.hasReading = true;
    block({});
  }

  /// Podman's and UTM's machines run; Docker is installed.
  void block(const Strings& blocked) {
    ContainerFindings findings;
    findings.running["Podman"];
    findings.running["UTM"];
    findings.installation = {
        .installed = {"Docker"}, .caPublishedAt = {}, .dockerSharesLibrary = false, .bundlePEM = "-----"};
    containers.reading = containerTrustReading(ContainerBlock{blocked, std::nullopt}, findings);
  }

  AgentWindowContent content(AgentPage page) const {
    const auto times = builders::times();
    const auto actions = allPanelActions();
    return agentWindowContent(page, {model, containers, builders::now, times, actions});
  }
};

/// Everything that can be wrong, is.
Mac inTrouble() {
  Mac mac;
  auto& snapshot = mac.model.snap;
  snapshot.sysext = health("broken", "red", "SYSEXT_PROXY_DISABLED");
  snapshot.egressLock = health("broken", "yellow", "EGRESS_LOCK_PARTIAL");
  snapshot.egressLock.selfHealing = true;
  snapshot.egressLock.expectedClearBy = builders::now + 16min;
  snapshot.deviceCA = health("broken", "red", "CA_UNTRUSTED");
  snapshot.caTrusted = false;
  snapshot.lastCheckinError = "the service refused";
  snapshot.update = StatusReport::Update{};
  snapshot.update->state = "eol";
  snapshot.update->latestVersion = "4.13.0";
  mac.model.checkinNotice = "Skipped: a check-in is running.";
  mac.model.sendDiagnosticsError = "Already sent recently. Try again in 2 min.";
  mac.containers.notificationAuthorization = NotificationAuthorization::denied;
  mac.containers.selected = "Podman";
  mac.block({"Podman"});
  return mac;
}

/// Every text of the catalogue is about twice as long.
StringsEntries twiceAsLong() {
  StringsEntries table;
  for (const auto& [key, text] : Copy::english()) {
    auto longer = std::string(text);
    while (longer.size() < 2 * text.size()) longer += " lang";
    table.emplace_back(key, longer);
  }
  return table;
}

class AgentWindowTest : public ViewTest {
 protected:
  AgentWindowTest() {
    auto made = AgentViewWindow::make(
        log,
        {.pageChosen = [this](AgentPage page) { chosen.push_back(page); },
         .pressed = [this](const PanelButton& button) { did.push_back(button.title); },
         .pageActionPressed = [this](PageAction action) { did.push_back(PageButton::of(action).title); },
         .runtimeSelected = [this](const std::string& name) { did.push_back("select " + name); },
         .snippetChosen =
             [this](ContainerSnippet snippet) { did.push_back("snippet " + std::string(nameOf(snippet))); },
         .copyPressed =
             [this](ContainersCopy what) {
               did.push_back("copy " + std::to_string(static_cast<int>(what)));
               return true;
             },
         .notifySwitched =
             [this](const std::string& name, bool isOn) {
               did.push_back(name + (isOn ? " on" : " off"));
               return true;
             },
         .allNotifySwitched =
             [this](bool isOn) {
               did.push_back(isOn ? "all on" : "all off");
               return true;
             },
         .activated = [this] { ++activations; },
         .resized = [this](const WindowSize& size) { sizes.push_back(size); },
         .closed = [this] { ++closings; }},
        Mac().content(AgentPage::ecosystems), theme);
    if (!made) throw std::runtime_error(made.error());
    view = std::move(*made);
  }
  ~AgentWindowTest() override { EXPECT_EQ(window().isVisible() ? unspoken() : Strings(), Strings()); }

  void open(const Mac& mac, AgentPage page, WindowSize size = {780, 540}) {
    view->open(mac.content(page), size, theme);
    awaitWindow();
  }
  void show(const Mac& mac, AgentPage page) {
    view->update(mac.content(page));
    frames();
  }

  /// The names that an assistive tool reads, of one role.
  Strings spokenOf(const std::string& role) const {
    Strings names;
    for (const auto& item : spoken()) {
      if (item.role == role) names.push_back(item.name);
    }
    return names;
  }

  /// The controls that the Tab key meets, starting behind the sidebar.
  Strings tabStops() {
    Strings names;
    const auto first = focused();
    do {
      names.push_back(focused());
      press(Qt::Key_Tab);
    } while (focused() != first && names.size() < 40);
    return names;
  }

  std::vector<AgentPage> chosen;
  Strings did;
  std::vector<WindowSize> sizes;
  int activations = 0;
  int closings = 0;
  std::unique_ptr<AgentWindowView> view;
};

TEST_F(AgentWindowTest, FitsAtEverySizeAndInEveryLanguage) {
  const auto checkAll = [&](const std::string& what) {
    for (const auto& mac : {Mac(), inTrouble()}) {
      for (const auto page : allPages) {
        for (const WindowSize size : {WindowSize{780, 540}, WindowSize{620, 360}}) {
          view->open(mac.content(page), size, theme);
          window().resize(static_cast<int>(size.width), static_cast<int>(size.height));
          frames();
          EXPECT_EQ(outside(*window().contentItem(), size.width), Strings())
              << what << " " << nameOf(page) << " " << size.width;
          EXPECT_EQ(unspoken(), Strings()) << what << " " << nameOf(page);
        }
      }
    }
  };
  checkAll("English");
  {
    const builders::Translated longer(twiceAsLong());
    checkAll("long");
  }
  {
    const builders::Translated hebrew({{"window.page.ecosystems", "מערכות"},
                                       {"verdict.protected", "מוגן"},
                                       {"verdict.notProtected", "מוגן"}});
    checkAll("right to left");
  }
  theme.textScale = 2;
  theme.appearance = Appearance::dark;
  checkAll("large");
}

TEST_F(AgentWindowTest, TheKeyboardReachesEveryPageAndControl) {
  const auto mac = inTrouble();
  open(mac, AgentPage::health);
  EXPECT_EQ(focused(), "Health") << "the sidebar";
  press(Qt::Key_Down);
  press(Qt::Key_Up);
  press(Qt::Key_2, Qt::ControlModifier);
  press(Qt::Key_8, Qt::ControlModifier);
  EXPECT_EQ(chosen, (std::vector{AgentPage::notifications, AgentPage::identity, AgentPage::containers}));
  EXPECT_EQ(tabStops(), (Strings{"Health", "Capture, Network filter is off", "Turn on network filter",
                                 "Credential, ost_…9f", "Runtime trust, covered", "Capture set, in sync",
                                 "Device CA, not trusted", "Re-trust CA…"}));
  show(mac, AgentPage::containers);
  EXPECT_EQ(tabStops(),
            (Strings{"Containers", "Podman", "Podman", "Copy setup command", "Reveal bundle in Finder",
                     "Copy bundle path", "Notify me when a container in Podman is blocked",
                     "Turn on in System Settings…", "Inside containers", "docker run", "Copy"}));
  press(Qt::Key_Tab);
  show(mac, AgentPage::help);
  EXPECT_EQ(focused(), "Help") << "the sidebar";
  press(Qt::Key_Escape);
  EXPECT_TRUE(becomes([&] { return closings == 1; }));
  open(mac, AgentPage::help);
  press(Qt::Key_W, Qt::ControlModifier);
  EXPECT_TRUE(becomes([&] { return closings == 2; }));
}

TEST_F(AgentWindowTest, EveryControlDoesWhatItSays) {
  auto mac = inTrouble();
  mac.containers.notificationAuthorization = NotificationAuthorization::notDetermined;
  open(mac, AgentPage::containers);
  for (const auto* name : {"Copy setup command", "Reveal bundle in Finder", "Copy bundle path",
                           "Notify me when a container in Podman is blocked", "Allow notifications…",
                           "compose.yaml", "Copy", "UTM, running"}) {
    pressBySpeech(name);
  }
  click("Docker, installed");
  press(Qt::Key_Down);
  EXPECT_EQ(did, (Strings{"copy 0", "Reveal bundle in Finder", "copy 2", "Podman on", "Allow notifications…",
                          "snippet compose", "copy 3", "select UTM", "select Docker", "select UTM"}));
  did.clear();
  show(mac, AgentPage::notifications);
  pressBySpeech("Allow notifications…");
  click("Notify me when a container is blocked");
  click("Docker");
  show(mac, AgentPage::identity);
  click("Check now");
  pressBySpeech("Install…");
  show(mac, AgentPage::help);
  click("Send to admin");
  EXPECT_EQ(did, (Strings{"Allow notifications…", "all on", "Docker on", "Check now", "Install…",
                          "Send to admin"}));
  click("Ecosystems, not protecting");
  EXPECT_EQ(chosen, std::vector{AgentPage::ecosystems});
}

TEST_F(AgentWindowTest, DrawsNothingForAnUnchangedContent) {
  auto mac = inTrouble();
  for (const auto page : allPages) {
    open(mac, page);
    view->update(mac.content(page));
    EXPECT_EQ(frames(), 0) << nameOf(page);
  }
  mac.model.snap.version = "2.5.0";
  show(mac, AgentPage::identity);
  EXPECT_TRUE(isSpoken("Version, 2.5.0"));
}

TEST_F(AgentWindowTest, ScrollSelectionAndFocusStayWhileDataChanges) {
  auto mac = inTrouble();
  open(mac, AgentPage::containers, {780, 400});
  for (int i = 0; i < 9; ++i) press(Qt::Key_Tab);
  EXPECT_EQ(focused(), "docker run");
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  const auto text = QGuiApplication::clipboard()->text();
  EXPECT_TRUE(text.startsWith(QStringLiteral("docker run")));
  const auto before = place("docker run");
  mac.block({});  // Podman moves to another section.
  mac.containers.notificationAuthorization = NotificationAuthorization::denied;
  show(mac, AgentPage::containers);
  EXPECT_EQ(focused(), "docker run");
  QGuiApplication::clipboard()->clear();
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), text) << "it is still selected";
  EXPECT_TRUE(isSpoken("Podman, running"));
  mac.block({"Podman"});
  show(mac, AgentPage::containers);
  EXPECT_NEAR(place("docker run").top(), before.top(), 1);
}

TEST_F(AgentWindowTest, HealthKeepsWhatTheUserOpenedOrClosed) {
  auto mac = inTrouble();
  open(mac, AgentPage::health);
  const auto isOpen = [&](const char* name) {
    const auto items = spoken();
    const auto found = std::ranges::find(items, name, &SpokenItem::name);
    return found != items.end() && found->isChecked;
  };
  EXPECT_TRUE(isOpen("Capture, Network filter is off"));
  EXPECT_TRUE(isSpoken("Code, SYSEXT_PROXY_DISABLED"));
  EXPECT_FALSE(isOpen("Capture set, in sync"));
  click("Capture set, in sync");
  pressBySpeech("Capture, Network filter is off");
  show(mac, AgentPage::help);
  mac.model.snap.version = "2.5.0";
  show(mac, AgentPage::health);
  EXPECT_FALSE(isOpen("Capture, Network filter is off"));
  EXPECT_FALSE(isSpoken("Code, SYSEXT_PROXY_DISABLED"));
  EXPECT_TRUE(isOpen("Capture set, in sync"));
  mac.model.snap.captureSet = health("broken", "yellow");
  mac.model.snap.sysext = health("ok");
  show(mac, AgentPage::health);
  const auto names = spokenOf("button");
  const auto captureSet =
      std::ranges::find_if(names, [](const auto& name) { return name.starts_with("Capture set"); });
  ASSERT_NE(captureSet, names.end());
  EXPECT_TRUE(isOpen(captureSet->c_str())) << "the user opened it";
  EXPECT_FALSE(isOpen("Capture, active")) << "the user closed it";
}

TEST_F(AgentWindowTest, ACopyButtonKeepsItsWidthWhileItSaysCopied) {
  auto mac = inTrouble();
  open(mac, AgentPage::containers);
  const auto width = place("Copy setup command").width();
  mac.containers.copied = ContainersCopy::setupCommand;
  show(mac, AgentPage::containers);
  EXPECT_EQ(place("Copied").width(), width);
  EXPECT_FALSE(isSpoken("Copy setup command"));
}

TEST_F(AgentWindowTest, InOneColumnTheDetailIsBelowItsRow) {
  const auto mac = inTrouble();
  open(mac, AgentPage::containers, {620, 500});
  EXPECT_LT(place("Podman, blocked, running").bottom(), place("Copy setup command").top());
  EXPECT_LT(place("Copy setup command").bottom(), place("Docker, installed").top());
  EXPECT_GT(place("Inside containers").top(), place("Apple Container").bottom());
  click("Podman, blocked, running");
  pressBySpeech("Docker, installed");
  EXPECT_EQ(did, (Strings{"select ", "select Docker"}));
}

TEST_F(AgentWindowTest, OneAccentButtonAtMost) {
  const auto accents = [&] {
    int count = 0;
    const std::function<void(const QQuickItem&)> visit = [&](const QQuickItem& at) {
      count += at.isVisible() && at.property("isPrimary").toBool() ? 1 : 0;
      for (const auto* child : at.childItems()) visit(*child);
    };
    visit(*window().contentItem());
    return count;
  };
  auto mac = inTrouble();
  mac.containers.notificationAuthorization = NotificationAuthorization::notDetermined;
  open(mac, AgentPage::ecosystems);
  for (const auto page : allPages) {
    show(mac, page);
    EXPECT_LE(accents(), page == AgentPage::egressLock || page == AgentPage::help ? 0 : 1) << nameOf(page);
    EXPECT_GE(accents(), page == AgentPage::egressLock || page == AgentPage::help ? 0 : 1) << nameOf(page);
  }
}

TEST_F(AgentWindowTest, OpensAsLargeAsTheScreenAllowsAndTellsItsSize) {
  const Mac mac;
  const auto screen = window().screen()->availableGeometry();
  open(mac, AgentPage::help, {5000, 5000});
  EXPECT_LE(window().width(), screen.width());
  EXPECT_LE(window().height(), screen.height());
  EXPECT_EQ(window().minimumSize(), QSize(620, 360));
  sizes.clear();
  window().resize(700, 400);
  EXPECT_TRUE(becomes([&] { return !sizes.empty() && sizes.back() == WindowSize{700, 400}; }));
  const auto shown = activations;
  EXPECT_GE(shown, 1);
  view->open(mac.content(AgentPage::identity), {780, 540}, theme);
  EXPECT_EQ(window().size(), QSize(700, 400)) << "an open window keeps its size";
  EXPECT_TRUE(isSpoken("Check now"));
  view->close();
  EXPECT_EQ(closings, 1);
  view->update(mac.content(AgentPage::help));
  EXPECT_FALSE(window().isVisible());
}

TEST_F(AgentWindowTest, WithoutAReportItSaysSo) {
  Mac mac;
  mac.model = {};
  mac.containers.hasReading = false;
  open(mac, AgentPage::ecosystems);
  EXPECT_TRUE(isSpoken("checking…"));
  EXPECT_EQ(spokenOf("heading"), (Strings{"Not reported", "Ecosystems"}));
  mac.model.snap.statusError = "agent status unavailable (exit 3)";
  mac.model.hasReading = true;
  show(mac, AgentPage::containers);
  EXPECT_TRUE(isSpoken("agent status unavailable (exit 3)"));
  EXPECT_TRUE(isSpoken("checking…"));
  EXPECT_TRUE(isSpoken("compose.yaml"));
}

TEST_F(AgentWindowTest, SixtyEcosystemsAndLongDetailsScroll) {
  auto mac = inTrouble();
  for (int i = 0; i < 60; ++i)
    mac.model.snap.guardEcosystems.push_back({"ecosystem" + std::to_string(i), "enforced"});
  mac.model.snap.captureSet = health("broken", "red");
  mac.model.snap.captureSet.detail = std::string(400, 'W');
  for (const auto page : {AgentPage::ecosystems, AgentPage::health}) {
    open(mac, page);
    EXPECT_EQ(outside(*window().contentItem(), 780), Strings()) << nameOf(page);
  }
  show(mac, AgentPage::ecosystems);
  const auto before = place("Enforced, No").top();
  for (int i = 0; i < 60; ++i) turnWheel();
  frames();
  EXPECT_LT(place("Enforced, No").top(), before);
  EXPECT_LT(place("Enforced, No").bottom(), 540);
}

}  // namespace
}  // namespace ostrel
