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

/// Every service of one host. References live as long as the host that `makeHost` gave.
struct Host {
  MainQueue& mainQueue;
  BackgroundQueue& backgroundQueue;
  BackgroundQueue&
      statusQueue;  ///< the threads of status runs alone, so that a hung helper holds up nothing else
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
  SystemWake& systemWake;
  SingleInstance& menuBarInstance;  ///< that of the person's icon
  UserNotifications& userNotifications;
  Workspace& workspace;
  Shell& shell;
  StatusItem& statusItem;
  Screens& screens;
  OnboardingWindow& onboardingWindow;
  Alerts& alerts;
  Pasteboard& pasteboard;
};

/// Keeps a host's services alive. Its end ends every child and thread of the host.
class HostLifetime {
 public:
  virtual ~HostLifetime() = default;
  virtual Host& services() = 0;
};

/// How much of a shell the process needs.
enum class Presence {
  questions,    ///< none: a signal that would end a main loop ends the process at once
  commandLine,  ///< one that only serves the main queue
  unseen,       ///< that of the desktop, where there is one, with nothing to see and no commands to read
  person,       ///< one with a screen or console
};

/// The host of this platform. One at a time, of those with a desktop one a process; on the main thread.
std::unique_ptr<HostLifetime> makeHost(Presence presence);

}  // namespace ostrel
