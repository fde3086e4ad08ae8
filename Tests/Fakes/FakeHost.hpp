#pragma once

#include "Platform/UserAccount.hpp"
#include "Tests/Fakes/FakeAgentWindow.hpp"
#include "Tests/Fakes/FakeAlerts.hpp"
#include "Tests/Fakes/FakeBackgroundQueue.hpp"
#include "Tests/Fakes/FakeBundle.hpp"
#include "Tests/Fakes/FakeChildProcesses.hpp"
#include "Tests/Fakes/FakeFileManager.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeLog.hpp"
#include "Tests/Fakes/FakeMainQueue.hpp"
#include "Tests/Fakes/FakeNetworkPath.hpp"
#include "Tests/Fakes/FakeNetworkPreferences.hpp"
#include "Tests/Fakes/FakePasteboard.hpp"
#include "Tests/Fakes/FakeRunningProcesses.hpp"
#include "Tests/Fakes/FakeScreens.hpp"
#include "Tests/Fakes/FakeShell.hpp"
#include "Tests/Fakes/FakeSingleInstance.hpp"
#include "Tests/Fakes/FakeStandardStreams.hpp"
#include "Tests/Fakes/FakeStatusItem.hpp"
#include "Tests/Fakes/FakeSystemExtensions.hpp"
#include "Tests/Fakes/FakeSystemWake.hpp"
#include "Tests/Fakes/FakeTimeFormat.hpp"
#include "Tests/Fakes/FakeUnixSockets.hpp"
#include "Tests/Fakes/FakeUserDefaults.hpp"
#include "Tests/Fakes/FakeUserNotifications.hpp"
#include "Tests/Fakes/FakeWorkspace.hpp"

namespace ostrel {

/// A host whose every service is a fake.
struct FakeHost {
  // Made in one place: the code of every fake in every test file would double the time to build the tests.
  FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;
  ~FakeHost();

  FakeClock clock;
  FakeMainQueue mainQueue{clock};
  FakeBackgroundQueue backgroundQueue;
  FakeBackgroundQueue statusQueue;
  FakeChildProcesses childProcesses;
  FakeFiles files;
  FakeBundle bundle;
  FakeTimeFormat timeFormat;
  FakeLog log;
  FakeStandardStreams standardStreams;
  FakeUnixSockets unixSockets;
  UserAccount userAccount{"/Users/robin", "/tmp", 501};
  FakeSystemExtensions systemExtensions;
  FakeNetworkPreferences networkPreferences;
  FakeUserDefaults userDefaults;
  FakeUserNotifications userNotifications{mainQueue};
  FakeShell shell;
  FakeStatusItem statusItem;
  FakeScreens screens;
  FakeAgentWindow agentWindow;
  FakeAlerts alerts;
  FakePasteboard pasteboard;
  FakeFileManager fileManager;
  FakeNetworkPath networkPath;
  FakeSystemWake systemWake;
  FakeSingleInstance menuBarInstance;
  FakeWorkspace workspace;
  FakeRunningProcesses runningProcesses;
};

}  // namespace ostrel
