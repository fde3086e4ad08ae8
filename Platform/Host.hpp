#pragma once

#include <memory>

#include "Platform/Alerts.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/Bundle.hpp"
#include "Platform/ChildProcesses.hpp"
#include "Platform/Clock.hpp"
#include "Platform/Files.hpp"
#include "Platform/Log.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/NetworkPath.hpp"
#include "Platform/NetworkPreferences.hpp"
#include "Platform/OnboardingWindow.hpp"
#include "Platform/Pasteboard.hpp"
#include "Platform/Screens.hpp"
#include "Platform/Shell.hpp"
#include "Platform/SingleInstance.hpp"
#include "Platform/StandardStreams.hpp"
#include "Platform/StatusItem.hpp"
#include "Platform/SystemExtensions.hpp"
#include "Platform/SystemWake.hpp"
#include "Platform/TimeFormat.hpp"
#include "Platform/UnixSockets.hpp"
#include "Platform/UserAccount.hpp"
#include "Platform/UserDefaults.hpp"
#include "Platform/UserNotifications.hpp"
#include "Platform/Workspace.hpp"

namespace ostrel {

/// The services of a host that need no shell. References live as long as the host.
struct Host {
  MainQueue& mainQueue;
  BackgroundQueue& backgroundQueue;
  BackgroundQueue&
      statusQueue;  ///< its threads serve status runs alone, so that a hung helper blocks nothing else
  Clock& clock;
  ChildProcesses& childProcesses;
  Files& files;
  UserDefaults& userDefaults;
  Bundle& bundle;
  TimeFormat& timeFormat;
  Log& log;
  StandardStreams& standardStreams;
  UnixSockets& unixSockets;
  const UserAccount& userAccount;
  SystemExtensions& systemExtensions;
  NetworkPreferences& networkPreferences;
  NetworkPath& networkPath;
  SingleInstance& menuBarInstance;  ///< of the user's one icon
  Workspace& workspace;
};

/// The shell of a host, with the services that come with it.
struct ShellServices {
  Shell& shell;
  StatusItem& statusItem;
  Screens& screens;
  OnboardingWindow& onboardingWindow;
  Alerts& alerts;
  Pasteboard& pasteboard;
  UserNotifications& userNotifications;
  SystemWake& systemWake;
};

/// What the shell of a process serves.
enum class ShellMode {
  queueOnly,    ///< the main queue alone
  hidden,       ///< the desktop, where there is one, with nothing to see and no commands to read
  interactive,  ///< a screen or a console
};

/// Keeps a host alive. Main thread.
class HostLifetime {
 public:
  virtual ~HostLifetime() = default;

  virtual const Host& services() = 0;

  /// Opens the shell, at most once. Until then a signal ends the process at once; from then on the shell's
  /// loop handles it.
  virtual const ShellServices& openShell(ShellMode mode) = 0;

  /// Closes the shell with everything it shows, ends the children and gives background work a second. Where
  /// some is stuck the process exits here with the status. Call it last, when nothing uses the services any
  /// more.
  virtual void shutDown(int status) = 0;
};

/// The host of this platform; one a process.
std::unique_ptr<HostLifetime> makeHost();

}  // namespace ostrel
