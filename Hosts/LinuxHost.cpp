#include <malloc.h>
#include <unistd.h>

#include <cstdlib>

#include "Hosts/DesktopPlugIns.hpp"
#include "Platform/Host.hpp"
#include "Platform/Linux/CombinedSystemWake.hpp"
#include "Platform/Linux/FileChanges.hpp"
#include "Platform/Linux/LinuxBundle.hpp"
#include "Platform/Linux/LinuxNetworkPath.hpp"
#include "Platform/Linux/LinuxSystemWake.hpp"
#include "Platform/Linux/LinuxWorkspace.hpp"
#include "Platform/Posix/FrontSignal.hpp"
#include "Platform/Posix/PosixBackgroundQueue.hpp"
#include "Platform/Posix/PosixChildProcesses.hpp"
#include "Platform/Posix/PosixClock.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixLog.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"
#include "Platform/Posix/PosixSingleInstance.hpp"
#include "Platform/Posix/PosixStandardStreams.hpp"
#include "Platform/Posix/PosixTimeFormat.hpp"
#include "Platform/Posix/PosixUnixSockets.hpp"
#include "Platform/Posix/PosixUserDefaults.hpp"
#include "Platform/Posix/TerminationSignals.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SimulatedNetworkPath.hpp"
#include "Platform/SimulatedMac/SimulatedNetworkPreferences.hpp"
#include "Platform/SimulatedMac/SimulatedOverrides.hpp"
#include "Platform/SimulatedMac/SimulatedSystemExtensions.hpp"
#include "Platform/SimulatedMac/SimulatedSystemWake.hpp"
#include "Shells/Console/ConsoleAlerts.hpp"
#include "Shells/Console/ConsoleOnboardingWindow.hpp"
#include "Shells/Console/ConsolePasteboard.hpp"
#include "Shells/Console/ConsoleScreens.hpp"
#include "Shells/Console/ConsoleShell.hpp"
#include "Shells/Console/ConsoleStatusItem.hpp"
#include "Shells/Console/ConsoleUserNotifications.hpp"
#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

namespace {

constexpr std::size_t backgroundThreads = 8;
constexpr std::size_t statusThreads = 4;

/// True where the environment names a display, or a platform of the toolkit's own.
bool namesDisplay() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return true;
  }
  return false;
}

/// Linux with the simulated Mac beneath the host root. Its shell is the desktop's where there is one, else
/// the console.
class LinuxHost final : public HostLifetime {
 public:
  explicit LinuxHost(Presence presence) : presence_(presence) {
    // One heap for all threads: they rarely allocate at once, and a second one would be cold at every
    // refresh.
    (void)::mallopt(M_ARENA_MAX, 1);
  }
  LinuxHost(const LinuxHost&) = delete;
  LinuxHost& operator=(const LinuxHost&) = delete;

  // The queues are joined next, as the last members; no child or daemon may keep their threads waiting.
  ~LinuxHost() override {
    childProcesses_.endAll();
    unixSockets_.endAll();
  }

  Host& services() override { return services_; }

 private:
  PathMap realPath() {
    return [this](std::string_view path) { return hostRoot_.realPath(path); };
  }

  /// Nothing without a display, and, with a line in the log, where the desktop's plug-in is not as it should
  /// be.
  std::unique_ptr<Desktop> makeDesktop() {
    const bool needsDesktop = presence_ == Presence::unseen || presence_ == Presence::person;
    if (!needsDesktop || !namesDisplay()) return nullptr;
    auto services = desktopServices(bundle_, log_);
    services.queueDescriptor = mainQueue_.descriptor();
    services.processDueWork = [this] { mainQueue_.processDueWork(); };
    services.signalDescriptor = signals_.descriptor();
    services.receivedSignal = [] { return TerminationSignals::received(); };
    const auto plugIn = loadShellPlugIn(bundle_);
    auto desktop =
        plugIn ? (*plugIn)->makeDesktop(std::move(services))
               : std::expected<std::unique_ptr<Desktop>, std::string>(std::unexpected(plugIn.error()));
    if (desktop) return std::move(*desktop);
    log_.line("ostrel: " + desktop.error());
    return nullptr;
  }

  std::vector<SystemWake*> wakeSources() {
    if (!desktop_) return {&kernelWake_};
    return {&kernelWake_, &desktop_->systemWake()};
  }

  const Presence presence_;
  PosixStandardStreams streams_;
  TerminationSignals signals_{presence_ == Presence::questions ? SignalHandling::system
                                                               : SignalHandling::mainLoop};
  PosixLog log_;
  PosixClock clock_;
  std::vector<std::string> languages_ = languagesOfEnvironment();
  PosixFiles realFiles_{[](std::string_view path) { return std::string(path); }};
  LinuxBundle bundle_{realFiles_, languages_};
  HostRoot hostRoot_ = HostRoot::fromEnvironment(bundle_.path());
  PosixFiles files_{realPath()};
  PosixUnixSockets unixSockets_{realPath()};
  UserAccount userAccount_{hostRoot_.home(), hostRoot_.temporaryFolder(), ::getuid()};
  const std::string defaultsPath_ = hostRoot_.home() + "/Library/Preferences/tech.brenn.ostrel-agent.json";
  PosixUserDefaults defaults_{files_, defaultsPath_, hostRoot_.realPath(defaultsPath_ + ".lock")};
  PosixTimeFormat timeFormat_{languages_.empty() ? "en" : languages_.front()};
  SimulatedNetworkPreferences networkPreferences_{files_, hostRoot_.realPath(simulatedstate::lock)};
  PosixChildProcesses childProcesses_{realPath()};
  PosixMainQueue mainQueue_;
  SimulatedSystemExtensions systemExtensions_{files_, mainQueue_, hostRoot_.realPath(simulatedstate::lock)};
  ConsoleUserNotifications consoleUserNotifications_{mainQueue_, streams_};
  LinuxWorkspace workspace_{bundle_.executablePath()};
  SimulatedOverrides overrides_{files_, hostRoot_.realPath(simulatedstate::lock)};
  OverridesWatch overridesWatch_ = [this](std::function<void()> changed) {
    return watchFile(mainQueue_, hostRoot_.realPath(simulatedstate::overrides), std::move(changed));
  };
  LinuxNetworkPath realNetworkPath_{mainQueue_, realFiles_};
  SimulatedNetworkPath networkPath_{realNetworkPath_, overrides_, overridesWatch_};
  LinuxSystemWake kernelWake_{mainQueue_};
  PosixSingleInstance menuBarInstance_{hostRoot_.realPath(
      hostRoot_.home() + "/Library/Application Support/tech.brenn.ostrel-agent/menubar.lock")};
  ConsoleStatusItem consoleStatusItem_{streams_};
  ConsoleScreens consoleScreens_{streams_};
  ConsoleOnboardingWindow consoleOnboardingWindow_{streams_};
  ConsoleAlerts consoleAlerts_{streams_};
  ConsolePasteboard consolePasteboard_{streams_};
  ConsoleShell consoleShell_{presence_ == Presence::person ? ConsoleInput::commands : ConsoleInput::ignored,
                             signals_,
                             mainQueue_,
                             streams_,
                             consoleStatusItem_,
                             consoleScreens_,
                             consoleOnboardingWindow_,
                             consoleAlerts_};
  std::unique_ptr<Desktop> desktop_ = makeDesktop();
  CombinedSystemWake realWake_{mainQueue_, wakeSources()};
  SimulatedSystemWake systemWake_{realWake_, overrides_, overridesWatch_};
  PosixBackgroundQueue backgroundQueue_{backgroundThreads};
  PosixBackgroundQueue statusQueue_{statusThreads};
  Host services_{
      .mainQueue = mainQueue_,
      .backgroundQueue = backgroundQueue_,
      .statusQueue = statusQueue_,
      .clock = clock_,
      .childProcesses = childProcesses_,
      .files = files_,
      .userDefaults = defaults_,
      .bundle = bundle_,
      .timeFormat = timeFormat_,
      .log = log_,
      .standardStreams = streams_,
      .unixSockets = unixSockets_,
      .userAccount = userAccount_,
      .systemExtensions = systemExtensions_,
      .networkPreferences = networkPreferences_,
      .networkPath = networkPath_,
      .systemWake = systemWake_,
      .menuBarInstance = menuBarInstance_,
      .userNotifications = desktop_ ? desktop_->notifications() : consoleUserNotifications_,
      .workspace = workspace_,
      .shell = desktop_ ? desktop_->shell() : consoleShell_,
      .statusItem = desktop_ ? desktop_->statusItem() : consoleStatusItem_,
      .screens = desktop_ ? desktop_->screens() : consoleScreens_,
      .onboardingWindow = desktop_ ? desktop_->onboardingWindow() : consoleOnboardingWindow_,
      .alerts = desktop_ ? desktop_->alerts() : consoleAlerts_,
      .pasteboard = desktop_ ? desktop_->pasteboard() : consolePasteboard_,
  };
  FrontSignal frontSignal_{mainQueue_, [this] { services_.shell.activate(); }};
};

}  // namespace

std::unique_ptr<HostLifetime> makeHost(Presence presence) { return std::make_unique<LinuxHost>(presence); }

}  // namespace ostrel
