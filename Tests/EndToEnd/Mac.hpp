#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// The program over a simulated Mac of its own, which no process outlives.
class Mac {
 public:
  /// The bundle is a copy without the desktop's plug-ins, so an agent started by launchd uses the console.
  Mac() {
    for (const auto* part : {"MacOS/OstrelAgent", "Helpers/ostrel-agent-endpoint"}) {
      fs::copy_file(bundleOfBuild / part, place.write(std::string("OstrelAgent.app/Contents/") + part, ""),
                    fs::copy_options::overwrite_existing);
    }
    fs::copy(bundleOfBuild / "Resources", place / "OstrelAgent.app/Contents/Resources",
             fs::copy_options::recursive);
  }
  ~Mac() { EXPECT_TRUE(processesWith(place.path()).empty()) << "a process is left"; }

  std::string control(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), CONTROL);
    const auto ran = ostrel::run(arguments, environment);
    EXPECT_EQ(ran.status, 0) << ran.error;
    return ran.output;
  }

  std::vector<std::string> command(const std::string& words) const {
    std::vector<std::string> command = {place / "OstrelAgent.app/Contents/MacOS/OstrelAgent"};
    for (std::size_t start = 0; start < words.size();) {
      const auto end = std::min(words.find(' ', start), words.size());
      command.push_back(words.substr(start, end - start));
      start = end + 1;
    }
    return command;
  }

  Ran run(const std::string& words) const { return ostrel::run(command(words), environment); }

  /// Runs the command and approves what it asks for.
  Ran runApproved(const std::string& words) const {
    Process process(command(words), environment);
    process.awaitOutput("approval required");
    control({"approve"});
    const int status = process.end();
    return {status, process.output(), process.error()};
  }

  Json json(const std::string& name) const { return Json::parse(place.read(name)); }
  Json state(const char* macPath) const { return json("root" + std::string(macPath)); }

  Json report() const {
    const auto ran = ostrel::run({helper, "status", "--json"}, environment);
    return Json::parse(ran.output);
  }
  Json verdict() const { return report()["health"]["verdict"]; }

  TemporaryFolder place;
  const fs::path bundleOfBuild = fs::path(AGENT).parent_path().parent_path();
  const std::string helper = place / "OstrelAgent.app/Contents/Helpers/ostrel-agent-endpoint";
  Process::Environment environment{{"HOME", "/Users/robin"}, {"OSTREL_HOST_ROOT", place / "root"}};
};

}  // namespace ostrel
