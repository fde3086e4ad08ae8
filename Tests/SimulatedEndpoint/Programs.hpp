#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "Platform/SimulatedMac/HostRoot.hpp"
#include "SimulatedEndpoint/Json.hpp"
#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel::simulated {

using Arguments = std::vector<std::string>;

/// The programs over a host root of their own.
struct Programs : testing::Test {
  Ran run(const std::string& program, Arguments arguments) const {
    arguments.insert(arguments.begin(), program);
    return ostrel::run(arguments, environment);
  }

  Ran status() const { return run(HELPER, {"status", "--json"}); }

  void control(Arguments arguments) const {
    const auto ran = run(CONTROL, std::move(arguments));
    ASSERT_EQ(ran.status, 0) << ran.error;
  }

  Json state(const char* macPath) const { return Json::parse(place.read("root" + std::string(macPath))); }

  TemporaryFolder place;
  std::string root = place / "root";
  Process::Environment environment{{"OSTREL_HOST_ROOT", root}, {"HOME", "/Users/robin"}};
};

}  // namespace ostrel::simulated
