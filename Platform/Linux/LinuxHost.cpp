#include <malloc.h>

#include "Platform/Console/ConsoleScreens.hpp"
#include "Platform/Console/ConsoleShell.hpp"
#include "Platform/Console/ConsoleStatusItem.hpp"
#include "Platform/Host.hpp"
#include "Platform/Linux/LinuxBundle.hpp"
#include "Platform/Posix/PosixBackgroundQueue.hpp"
#include "Platform/Posix/PosixChildProcesses.hpp"
#include "Platform/Posix/PosixClock.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixLog.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"
#include "Platform/Posix/PosixStandardStreams.hpp"
#include "Platform/Posix/PosixTimeFormat.hpp"
#include "Platform/Posix/PosixUserDefaults.hpp"
#include "Platform/Posix/TerminationSignals.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SimulatedNetworkPreferences.hpp"

namespace ostrel {

namespace {

constexpr std::size_t backgroundThreads = 8;
constexpr std::size_t statusThreads = 4;

/// Linux with the simulated Mac beneath the host root, and the console as its shell.
class LinuxHost final : public HostLifetime {
 public:
  LinuxHost() {
    // One heap for all threads: they rarely allocate at once, and a second one would be cold at every
    // refresh.
    (void)::mallopt(M_ARENA_MAX, 1);
  }
  LinuxHost(const LinuxHost&) = delete;
  LinuxHost& operator=(const LinuxHost&) = delete;

  // The queues are joined next, as the last members; no child may keep their threads waiting.
  ~LinuxHost() override { childProcesses_.endAll(); }

  Host& services() override { return services_; }

 private:
  PathMap realPath() {
    return [this](std::string_view path) { return hostRoot_.realPath(path); };
  }

  PosixStandardStreams streams_;
  TerminationSignals signals_;
  PosixLog log_;
  PosixClock clock_;
  std::vector<std::string> languages_ = languagesOfEnvironment();
  PosixFiles bundleFiles_{[](std::string_view path) { return std::string(path); }};
  LinuxBundle bundle_{bundleFiles_, languages_};
  HostRoot hostRoot_ = HostRoot::fromEnvironment(bundle_.path());
  PosixFiles files_{realPath()};
  PosixUserDefaults defaults_{files_, hostRoot_.home() + "/Library/Preferences/tech.brenn.ostrel-agent.json"};
  PosixTimeFormat timeFormat_{languages_.empty() ? "en" : languages_.front()};
  SimulatedNetworkPreferences networkPreferences_{files_};
  PosixChildProcesses childProcesses_{realPath()};
  PosixMainQueue mainQueue_;
  ConsoleStatusItem statusItem_{streams_};
  ConsoleScreens screens_{streams_};
  ConsoleShell shell_{signals_, mainQueue_, streams_, statusItem_, screens_};
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
      .networkPreferences = networkPreferences_,
      .shell = shell_,
      .statusItem = statusItem_,
      .screens = screens_,
  };
};

}  // namespace

std::unique_ptr<HostLifetime> makeHost() { return std::make_unique<LinuxHost>(); }

}  // namespace ostrel
