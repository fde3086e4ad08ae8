#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <optional>

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
#include "Platform/SimulatedMac/SimulatedApplications.hpp"
#include "Platform/SimulatedMac/SimulatedNetworkPath.hpp"
#include "Platform/SimulatedMac/SimulatedNetworkPreferences.hpp"
#include "Platform/SimulatedMac/SimulatedOverrides.hpp"
#include "Platform/SimulatedMac/SimulatedRunningProcesses.hpp"
#include "Platform/SimulatedMac/SimulatedSystemExtensions.hpp"
#include "Platform/SimulatedMac/SimulatedSystemWake.hpp"
#include "Platform/SimulatedMac/SimulatedUserNotifications.hpp"
#include "Platform/SimulatedMac/SimulatedWorkspace.hpp"
#include "Shells/Console/ConsoleAgentWindow.hpp"
#include "Shells/Console/ConsoleAlerts.hpp"
#include "Shells/Console/ConsoleFileManager.hpp"
#include "Shells/Console/ConsoleOnboardingWindow.hpp"
#include "Shells/Console/ConsolePasteboard.hpp"
#include "Shells/Console/ConsoleScreens.hpp"
#include "Shells/Console/ConsoleShell.hpp"
#include "Shells/Console/ConsoleStatusItem.hpp"
#include "Shells/Console/ConsoleUserNotifications.hpp"
#include "Shells/Desktop/ShellPlugIn.hpp"

namespace ostrel {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t backgroundThreads = 8;
// At most four running status runs, plus four threads stuck in runs that were given up.
constexpr std::size_t statusThreads = 8;
constexpr std::chrono::milliseconds graceForBackgroundWork{1000};
// Larger blocks, such as megabytes of helper output, return to the system when they are freed.
constexpr int largestHeapBlock = 1 << 20;

/// True when the environment names a display or a platform plug-in of the toolkit.
bool namesDisplay() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return true;
  }
  return false;
}

std::string realMenuBarLock(const HostRoot& root) {
  return root.realPath(root.home() + "/Library/Application Support/tech.brenn.ostrel-agent/menubar.lock");
}

/// The host's services that a shell uses.
struct ShellHost {
  const TerminationSignals& signals;
  PosixMainQueue& mainQueue;
  PosixStandardStreams& streams;
  PosixLog& log;
  LinuxBundle& bundle;
  SimulatedOverrides& overrides;
  const OverridesWatch& overridesWatch;
  PathMap realPath;
};

/// Opens the desktop shell when there is a display, else the console.
class LinuxShell {
 public:
  LinuxShell(ShellMode mode, ShellHost host)
      : host_(host),
        consoleShell_(mode == ShellMode::interactive ? ConsoleInput::commands : ConsoleInput::ignored,
                      host.signals, host.mainQueue, host.streams, consoleStatusItem_, consoleScreens_,
                      consoleAgentWindow_, consoleOnboardingWindow_, consoleAlerts_),
        desktop_(mode == ShellMode::queueOnly || !namesDisplay() ? nullptr : makeDesktop()) {}

  const ShellServices& services() const { return services_; }

 private:
  /// Null, with a log line, when the plug-in is missing, damaged or from another build.
  std::unique_ptr<Desktop> makeDesktop() {
    auto services = desktopServices(host_.bundle, host_.log);
    services.queueDescriptor = host_.mainQueue.descriptor();
    services.processDueWork = [&queue = host_.mainQueue] { queue.processDueWork(); };
    services.realPath = host_.realPath;
    services.signalDescriptor = host_.signals.descriptor();
    services.receivedSignal = [] { return TerminationSignals::received(); };
    const auto plugIn = loadShellPlugIn(host_.bundle);
    auto desktop =
        plugIn ? (*plugIn)->makeDesktop(std::move(services))
               : std::expected<std::unique_ptr<Desktop>, std::string>(std::unexpected(plugIn.error()));
    if (desktop) return std::move(*desktop);
    host_.log.line("ostrel: " + desktop.error());
    return nullptr;
  }

  std::vector<SystemWake*> wakeSources() {
    if (!desktop_) return {&kernelWake_};
    return {&kernelWake_, &desktop_->systemWake()};
  }

  ShellHost host_;
  ConsoleUserNotifications consoleUserNotifications_{host_.mainQueue, host_.streams};
  ConsoleStatusItem consoleStatusItem_{host_.streams};
  ConsoleScreens consoleScreens_{host_.streams};
  ConsoleAgentWindow consoleAgentWindow_{host_.streams, consoleStatusItem_};
  ConsoleOnboardingWindow consoleOnboardingWindow_{host_.streams};
  ConsoleAlerts consoleAlerts_{host_.streams};
  ConsolePasteboard consolePasteboard_{host_.streams};
  ConsoleFileManager consoleFileManager_{host_.mainQueue};
  ConsoleShell consoleShell_;
  LinuxSystemWake kernelWake_{host_.mainQueue};
  std::unique_ptr<Desktop> desktop_;
  CombinedSystemWake realWake_{host_.mainQueue, wakeSources()};
  SimulatedSystemWake systemWake_{realWake_, host_.overrides, host_.overridesWatch};
  SimulatedUserNotifications userNotifications_{
      desktop_ ? desktop_->notifications() : consoleUserNotifications_, host_.overrides, host_.mainQueue};
  ShellServices services_{
      .shell = desktop_ ? desktop_->shell() : consoleShell_,
      .statusItem = desktop_ ? desktop_->statusItem() : consoleStatusItem_,
      .screens = desktop_ ? desktop_->screens() : consoleScreens_,
      .agentWindow = desktop_ ? desktop_->agentWindow() : consoleAgentWindow_,
      .onboardingWindow = desktop_ ? desktop_->onboardingWindow() : consoleOnboardingWindow_,
      .alerts = desktop_ ? desktop_->alerts() : consoleAlerts_,
      .pasteboard = desktop_ ? desktop_->pasteboard() : consolePasteboard_,
      .fileManager = desktop_ ? desktop_->fileManager() : consoleFileManager_,
      .userNotifications = userNotifications_,
      .systemWake = systemWake_,
  };
  FrontSignal frontSignal_{host_.mainQueue, [this] { services_.shell.activate(); }};
};

/// The Linux host: it runs the simulated Mac beneath the host root.
class LinuxHost final : public HostLifetime {
 public:
  LinuxHost() {
    // One malloc arena for all threads: they rarely allocate at once, and a second would be cold at every
    // refresh.
    (void)::mallopt(M_ARENA_MAX, 1);
    (void)::mallopt(M_MMAP_THRESHOLD, largestHeapBlock);
  }
  LinuxHost(const LinuxHost&) = delete;
  LinuxHost& operator=(const LinuxHost&) = delete;

  // The queues are destroyed next and join their threads, so nothing may block on a child or the daemon.
  ~LinuxHost() override {
    childProcesses_.endAll();
    unixSockets_.endAll();
  }

  const Host& services() override { return services_; }

  const ShellServices& openShell(ShellMode mode) override {
    signals_.emplace();
    shell_.emplace(mode, ShellHost{*signals_, mainQueue_, streams_, log_, bundle_, overrides_,
                                   overridesWatch_, realPath()});
    return shell_->services();
  }

  void shutDown(int status) override {
    childProcesses_.refuseStarts();
    shell_.reset();
    childProcesses_.endAll();
    unixSockets_.endAll();
    // One after the other they get that time together: what has ended meanwhile need not be waited for.
    const bool isStatusIdle = statusQueue_.finish(graceForBackgroundWork);
    const bool isIdle = backgroundQueue_.finish(isStatusIdle ? graceForBackgroundWork : 0ms);
    if (!isStatusIdle || !isIdle) std::_Exit(status);
  }

 private:
  PathMap realPath() {
    return [this](std::string_view path) { return hostRoot_.realPath(path); };
  }

  PosixStandardStreams streams_;
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
  LinuxWorkspace realWorkspace_{bundle_.executablePath()};
  SimulatedApplications applications_{files_};
  SimulatedWorkspace workspace_{realWorkspace_, applications_};
  SimulatedRunningProcesses runningProcesses_{applications_};
  SimulatedOverrides overrides_{files_, hostRoot_.realPath(simulatedstate::lock)};
  OverridesWatch overridesWatch_ = [this](std::function<void()> changed) {
    return watchFile(mainQueue_, hostRoot_.realPath(simulatedstate::overrides), std::move(changed));
  };
  LinuxNetworkPath realNetworkPath_{mainQueue_, realFiles_};
  SimulatedNetworkPath networkPath_{realNetworkPath_, overrides_, overridesWatch_};
  PosixSingleInstance menuBarInstance_{realMenuBarLock(hostRoot_)};
  // They outlast the shell, so that a second signal does not cut the shutdown short.
  std::optional<TerminationSignals> signals_;
  std::optional<LinuxShell> shell_;
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
      .menuBarInstance = menuBarInstance_,
      .workspace = workspace_,
      .runningProcesses = runningProcesses_,
  };
};

}  // namespace

std::unique_ptr<HostLifetime> makeHost() { return std::make_unique<LinuxHost>(); }

}  // namespace ostrel
