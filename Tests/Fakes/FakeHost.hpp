#pragma once

#include "Platform/Host.hpp"
#include "Tests/Fakes/FakeBackgroundQueue.hpp"
#include "Tests/Fakes/FakeBundle.hpp"
#include "Tests/Fakes/FakeChildProcesses.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeLog.hpp"
#include "Tests/Fakes/FakeMainQueue.hpp"
#include "Tests/Fakes/FakeNetworkPreferences.hpp"
#include "Tests/Fakes/FakeScreens.hpp"
#include "Tests/Fakes/FakeShell.hpp"
#include "Tests/Fakes/FakeStandardStreams.hpp"
#include "Tests/Fakes/FakeStatusItem.hpp"
#include "Tests/Fakes/FakeTimeFormat.hpp"
#include "Tests/Fakes/FakeUserDefaults.hpp"

namespace ostrel {

/// A host whose every service is in the hands of the test.
struct FakeHost {
  FakeClock clock;
  FakeMainQueue mainQueue{clock};
  FakeBackgroundQueue backgroundQueue;
  FakeBackgroundQueue statusQueue;
  FakeChildProcesses childProcesses;
  FakeFiles files;
  FakeUserDefaults userDefaults;
  FakeBundle bundle;
  FakeTimeFormat timeFormat;
  FakeLog log;
  FakeStandardStreams standardStreams;
  FakeNetworkPreferences networkPreferences;
  FakeShell shell;
  FakeStatusItem statusItem;
  FakeScreens screens;

  Host services{
      .mainQueue = mainQueue,
      .backgroundQueue = backgroundQueue,
      .statusQueue = statusQueue,
      .clock = clock,
      .childProcesses = childProcesses,
      .files = files,
      .userDefaults = userDefaults,
      .bundle = bundle,
      .timeFormat = timeFormat,
      .log = log,
      .standardStreams = standardStreams,
      .networkPreferences = networkPreferences,
      .shell = shell,
      .statusItem = statusItem,
      .screens = screens,
  };

  FakeHost() = default;
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;
};

}  // namespace ostrel
