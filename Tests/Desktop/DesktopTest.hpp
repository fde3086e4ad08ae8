#pragma once

#include <gtest/gtest.h>

#include <QGuiApplication>

#include "Tests/Desktop/SessionBus.hpp"

namespace ostrel {

/// A test with the toolkit's application object and a session bus.
struct DesktopTest : testing::Test {
  int count = 1;
  char word[5] = "test";
  char* words[2] = {word, nullptr};
  QGuiApplication application{count, words};
  SessionBus bus;
};

}  // namespace ostrel
