#include "Tests/Soak/FakeClockSoak.hpp"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include "OstrelAgent/Status/StatusRead.hpp"
#include "Tests/Fakes/FakeMenuBar.hpp"
#include "Tests/Soak/RandomAnswers.hpp"

namespace ostrel {

namespace {

using namespace std::chrono_literals;

constexpr const char* notProtectedCategory = "tech.brenn.ostrel-agent.not-protected";
// Four runs in progress, and four that are over while their threads hang.
constexpr std::size_t maxStatusWork = 8;
const PlatformError refusal{"FakeErrorDomain", 1, "refused"};

bool asksForStatus(const ChildCommand& command) {
  return !command.arguments.empty() && command.arguments.front() == "status" &&
         command.executable.ends_with("ostrel-agent-endpoint");
}

bool reactivates(const ChildCommand& command) {
  return command.arguments == std::vector<std::string>{"reactivate"};
}

}  // namespace

FakeClockSoak::FakeClockSoak(std::uint64_t seed) : random_(seed), status_(randomStatus(random_)) {
  host_.files.putExecutable(host_.bundle.path() + "/Contents/Helpers/ostrel-agent-endpoint");
  host_.files.put(std::string(ControlSocket::socketPath), "socket");
  host_.childProcesses.answer = [this](const ChildCommand& command) {
    return asksForStatus(command) ? status_ : randomResult(random_);
  };
  host_.backgroundQueue.wrap = [this](std::function<void()> work) {
    return [this, at = wall_.now(), work = std::move(work)] {
      work();
      takeRequests(at);
    };
  };
  fillAnswers();
  forgetSettings();
  controller_ = menuBarOn(host_, host_.statusItem, wall_);
  controller_->start();
  settle();
}

std::optional<std::string> FakeClockSoak::run(int refreshes) {
  while (refreshes_ < refreshes && !fault_) step();
  if (!fault_) settle();
  return fault_;
}

void FakeClockSoak::step() {
  using Act = void (FakeClockSoak::*)();
  constexpr std::pair<std::size_t, Act> chances[] = {
      {30, &FakeClockSoak::letTimePass},        {30, &FakeClockSoak::runSomeWork},
      {10, &FakeClockSoak::changeNetwork},      {10, &FakeClockSoak::usePanel},
      {4, &FakeClockSoak::changeAnswers},       {4, &FakeClockSoak::settle},
      {3, &FakeClockSoak::sleepOrSetClock},     {2, &FakeClockSoak::changeNetworkExtension},
      {2, &FakeClockSoak::changeNotifications},
  };
  std::size_t all = 0;
  for (const auto& [chance, act] : chances) all += chance;
  auto left = random_.below(all);
  for (const auto& [chance, act] : chances) {
    if (left < chance) {
      (this->*act)();
      break;
    }
    left -= chance;
  }
  take();
}

void FakeClockSoak::letTimePass() { host_.mainQueue.advance(std::chrono::milliseconds(random_.below(7000))); }

/// Status runs that are left waiting are slow ones. A helper that hangs rarely answers.
void FakeClockSoak::runSomeWork() {
  host_.networkPreferences.isDeferred = random_.oneIn(4);
  for (auto count = random_.below(6); count > 0 && host_.statusQueue.countWaiting() > 0; --count) {
    if (!isHanging_ || random_.oneIn(10)) host_.statusQueue.runNext();
  }
  for (auto count = random_.below(4); count > 0 && host_.networkPreferences.countDeferred() > 0; --count) {
    host_.networkPreferences.completeNext();
  }
  for (auto count = random_.below(4); count > 0 && host_.backgroundQueue.countWaiting() > 0; --count) {
    host_.backgroundQueue.runNext();
  }
  host_.mainQueue.runAll();
}

void FakeClockSoak::changeNetwork() {
  constexpr const char* names[] = {"en0", "en1", "utun3", "awdl0"};
  if (random_.oneIn(4)) return host_.systemWake.wake();
  std::vector<std::string> interfaces;
  for (const auto* name : names) {
    if (random_.oneIn(2)) interfaces.emplace_back(name);
  }
  host_.networkPath.update(!random_.oneIn(4), interfaces);
}

/// A change causes a check-in of its own, so earlier ones are settled before and after it.
void FakeClockSoak::changeNetworkExtension() {
  settle();
  auto& preferences = host_.networkPreferences;
  preferences.transparentProxies = std::vector{TransparentProxyConfiguration{
      .enabled = random_.oneIn(2), .connected = random_.oneIn(2), .identifier = "1"}};
  if (random_.oneIn(4)) preferences.transparentProxies = std::unexpected(TransparentProxiesError(refusal));
  preferences.contentFilter = ContentFilterConfiguration{.hasProvider = true, .enabled = random_.oneIn(2)};
  if (random_.oneIn(4)) preferences.contentFilter = std::unexpected(refusal);
  preferences.filterSaveError = random_.oneIn(3) ? std::optional(refusal) : std::nullopt;
  settle();
}

void FakeClockSoak::sleepOrSetClock() {
  settle();  // before the clock changes
  wall_.offset += std::chrono::minutes(random_.below(24 * 60));
  if (random_.oneIn(3)) {
    wall_.offset -= std::chrono::minutes(random_.below(48 * 60));
    nudges_.forget();
    redNotifications_.forget();
    containerNotifications_.clear();
  }
  if (random_.oneIn(2)) host_.systemWake.wake();
}

void FakeClockSoak::changeNotifications() {
  using Result = std::expected<void, PlatformError>;
  constexpr NotificationResponse::Case kinds[] = {NotificationResponse::Case::opened,
                                                  NotificationResponse::Case::dismissed};
  host_.userNotifications.postResult = random_.oneIn(3) ? Result(std::unexpected(refusal)) : Result();
  host_.userNotifications.respond({.kind = random_.pick(kinds), .category = notProtectedCategory});
  host_.userDefaults.writeError = random_.oneIn(3) ? std::optional(refusal) : std::nullopt;
  if (random_.oneIn(8)) forgetSettings();
}

/// All but the runtimes of which the user wants to be notified.
void FakeClockSoak::forgetSettings() {
  redNotifications_.forget();
  containerNotifications_.clear();
  host_.userDefaults = FakeUserDefaults();
  (void)host_.userDefaults.set("ContainerBlockNotifyRuntimes", std::vector<std::string>{"one", "two"});
}

void FakeClockSoak::usePanel() {
  constexpr std::optional<Appearance> appearances[] = {Appearance::light, Appearance::dark, std::nullopt};
  switch (random_.below(5)) {
    case 0:
      if (host_.screens.isShown && !host_.screens.panels.empty()) {
        return pressButton(host_.screens.panels.back().buttons());
      }
      return pressButton(host_.statusItem.menu);
    case 1:
      if (!host_.alerts.shown.empty())
        host_.alerts.press(random_.below(host_.alerts.shown.front().buttons.size()));
      return;
    case 2:
      host_.statusItem.hasImages = !random_.oneIn(4);
      return host_.statusItem.change(random_.pick(appearances));
    case 3:
      host_.screens.isShown = false;
      return;
    default:
      host_.screens.height =
          random_.oneIn(4) ? std::nullopt : std::optional(static_cast<double>(random_.below(2000)));
      host_.statusItem.click();
  }
}

void FakeClockSoak::pressButton(const std::vector<PanelButton>& buttons) {
  if (buttons.empty()) return;
  host_.screens.press(random_.pick(buttons));
}

void FakeClockSoak::changeAnswers() {
  status_ = randomStatus(random_);
  isHanging_ = random_.oneIn(4);
  host_.unixSockets.answers.clear();
  fillAnswers();
  const auto fault = [this](int number) {
    return random_.oneIn(8) ? std::optional(ErrorNumber{number}) : std::nullopt;
  };
  host_.unixSockets.openError = fault(EMFILE);
  host_.unixSockets.connectError = fault(ECONNREFUSED);
  host_.unixSockets.writeError = fault(EPIPE);
}

/// Runs all work, twice, since the health of a check-in outlasts the refreshes that began before it.
void FakeClockSoak::settle() {
  for (int round = 0; round < 2; ++round) {
    controller_->refresh();
    runAllWork();
  }
  take();
  settledExtension_ = extension();
  expectRest();
}

void FakeClockSoak::runAllWork() {
  auto& preferences = host_.networkPreferences;
  preferences.isDeferred = false;
  do {
    while (preferences.countDeferred() > 0) preferences.completeNext();
    host_.statusQueue.runAll();
    host_.backgroundQueue.runAll();
    host_.mainQueue.runAll();
  } while (isWorkLeft());
}

NetworkExtensionState FakeClockSoak::extension() const {
  return NetworkExtensionState::of(
      statusSnapshot({.helper = readHelper({}, nullptr),
                      .transparentProxies = host_.networkPreferences.transparentProxies,
                      .contentFilter = host_.networkPreferences.contentFilter}));
}

bool FakeClockSoak::isWorkLeft() const {
  return host_.statusQueue.countWaiting() + host_.backgroundQueue.countWaiting() +
                 host_.networkPreferences.countDeferred() >
             0 ||
         host_.mainQueue.isWorkDue();
}

/// Checks what the role has done since the last call, and clears the fakes.
void FakeClockSoak::take() {
  refreshes_ += static_cast<int>(std::ranges::count_if(host_.childProcesses.commands, asksForStatus));
  reactivations_ += std::ranges::count_if(host_.childProcesses.commands, reactivates);
  expect(reactivations_ <= 1, "the extension is re-activated a second time");
  host_.childProcesses.commands.clear();
  takeNotifications();
  expect(host_.statusQueue.countWaiting() <= maxStatusWork, "too much work of status runs");
  auto& panels = host_.screens.panels;
  if (panels.size() > 1) panels.erase(panels.begin(), panels.end() - 1);
  host_.log.lines.clear();
  host_.standardStreams = FakeStandardStreams();
  host_.childProcesses.started.clear();
}

/// Requests of one piece of background work, which was added at that time.
void FakeClockSoak::takeRequests(Date arrived) {
  auto& sockets = host_.unixSockets;
  for (const auto& connection : sockets.connections) {
    for (const auto& request : connection.writes) {
      const bool isWake = request.contains(R"("reason":"wake")");
      const bool isNetworks = request.contains(R"("reason":"network")") && extension() == settledExtension_;
      if (!isWake && !isNetworks) continue;
      expect(nudges_.take(arrived, CheckInNudges::minInterval), "two nudges within a minute");
    }
  }
  sockets.connections.clear();
  fillAnswers();
}

void FakeClockSoak::fillAnswers() {
  while (host_.unixSockets.answers.size() < 16) host_.unixSockets.answers.push_back(randomAnswer(random_));
}

/// Refreshes may be up to one step of time older than now.
void FakeClockSoak::takeNotifications() {
  auto& shown = host_.statusItem.shown;
  for (const auto& icon : shown) {
    const bool isRed = icon.text.ends_with("not protected") || icon.text.ends_with("not reported");
    hasRecovered_ = hasRecovered_ || !isRed;
  }
  if (shown.size() > 1) shown.erase(shown.begin(), shown.end() - 1);
  auto& posted = host_.userNotifications.posted;
  for (const auto& notification : posted) {
    if (notification.category != notProtectedCategory) {
      auto& ofRuntime = containerNotifications_[notification.title];
      expect(ofRuntime.take(wall_.now(), 24h - 10s), "two notifications of one runtime within a day");
      expect(!notification.title.contains("three"), "a notification that the user did not choose");
      continue;
    }
    const std::chrono::milliseconds least = std::exchange(hasRecovered_, false) ? 1h : 24h;
    expect(redNotifications_.take(wall_.now(), least - 10s), "two notifications too soon after another");
  }
  posted.clear();
}

void FakeClockSoak::expect(bool holds, const std::string& rule) {
  if (!holds && !fault_) fault_ = rule + ", at refresh " + std::to_string(refreshes_);
}

void FakeClockSoak::expectRest() {
  expect(host_.statusQueue.countWaiting() == 0, "a status run is left at rest");
  expect(host_.mainQueue.countTimers() <= 4, "more timers than tick, nudge and two notices at rest");
  const auto answer = status_ ? HelperRunner::HelperOutput{status_->status, status_->output}
                              : HelperRunner::HelperOutput{HelperRunner::helperNotStarted, ""};
  const auto snapshot = statusSnapshot({.helper = readHelper(answer, nullptr)});
  const auto& item = host_.statusItem;
  const auto palette = MenuBarPalette::matching(item.shownAppearance);
  const auto verdict = ProtectionVerdict::of(snapshot);
  const auto icon = MenuBarIcon::of(verdict, palette, item.hasImages, item.hasSymbols);
  expect(!item.shown.empty() && item.shown.back() == icon, "the icon is not that of the verdict");
  if (!host_.screens.isShown) return;
  const auto& panel = host_.screens.panels.back();
  const auto& flags = panel.inFlight;
  expect(!flags.checkin && !flags.diagnostics && !flags.sendingDiagnostics,
         "a button is in progress at rest");
  const bool isOffered = snapshot.update.has_value();
  expect(!flags.update || isOffered, "an update is installed that is not offered");
  expect(panel.header.word == verdict.headerText(), "the panel shows another verdict");
}

}  // namespace ostrel
