#pragma once

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QGuiApplication>

#include "Shells/Desktop/Shell/DesktopBus.hpp"
#include "Tests/Fakes/FakeLog.hpp"
#include "Tests/Shells/Desktop/Shell/SessionBus.hpp"

namespace ostrel {

/// A test with the toolkit's application object, and a session bus with the program and another on it.
struct DesktopTest : testing::Test {
  DesktopTest() {
    EXPECT_TRUE(spinUntil([this] { return program.isJoined(); }));
    program.connection().send(busCall("RequestName") << programName << 0U);
    EXPECT_TRUE(spinUntil([this] { return hasName(programName); }));
  }

  bool hasName(const QString& name) const { return desktop.interface()->isServiceRegistered(name).value(); }

  int count = 1;
  char word[5] = "test";
  char* words[2] = {word, nullptr};
  QGuiApplication application{count, words};
  SessionBus bus;
  FakeLog log;
  DesktopBus program{QString::fromStdString(bus.address()), log};
  QDBusConnection desktop = bus.connect();
  const QString programName = QStringLiteral("org.example.Program");
};

}  // namespace ostrel
