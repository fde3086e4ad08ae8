#pragma once

#include <memory>

#include "Platform/AgentWindow.hpp"
#include "Platform/Alerts.hpp"
#include "Platform/BackgroundQueue.hpp"
#include "Platform/Bundle.hpp"
#include "Platform/ChildProcesses.hpp"
#include "Platform/Clock.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/Files.hpp"
#include "Platform/Log.hpp"
#include "Platform/MainQueue.hpp"
#include "Platform/NetworkPath.hpp"
#include "Platform/NetworkPreferences.hpp"
#include "Platform/OnboardingWindow.hpp"
#include "Platform/Pasteboard.hpp"
#include "Platform/RunningProcesses.hpp"
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
  BackgroundQueue& statusQueue;  ///< for status runs only: a hung helper blocks nothing else
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
  RunningProcesses& runningProcesses;
};

/// The shell of a host, with the services that come with it.
struct ShellServices {
  Shell& shell;
  StatusItem& statusItem;
  Screens& screens;
  AgentWindow& agentWindow;
  OnboardingWindow& onboardingWindow;
  Alerts& alerts;
  Pasteboard& pasteboard;
  FileManager& fileManager;
  UserNotifications& userNotifications;
  SystemWake& systemWake;
};

/// How much of a shell a process needs.
enum class ShellMode {
  queueOnly,    ///< the main queue only
  hidden,       ///< the desktop, if any, without windows or console commands
  interactive,  ///< a screen or a console
};

/// Keeps a host alive. Main thread.
class HostLifetime {
 public:
  virtual ~HostLifetime() = default;

  virtual const Host& services() = 0;

  /// Opens the shell; call at most once. Before this call a signal ends the process at once; after it the
  /// shell's loop handles signals.
  virtual const ShellServices& openShell(ShellMode mode) = 0;

  /// Closes the shell, ends the children and gives background work a second; if some is stuck, the process
  /// exits here with the status. Call it last, when nothing uses the services.
  virtual void shutDown(int status) = 0;
};

/// Creates the host of this platform; one per process.
std::unique_ptr<HostLifetime> makeHost();

}  // namespace ostrel
