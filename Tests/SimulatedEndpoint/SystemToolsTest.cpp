#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "SimulatedEndpoint/PropertyList.hpp"
#include "Tests/SimulatedEndpoint/Programs.hpp"

namespace ostrel::simulated {
namespace {

namespace fs = std::filesystem;

constexpr const char* macPath = "/Users/robin/Library/LaunchAgents/job.plist";
constexpr const char* jobsFile = "/Library/Application Support/simulated-endpoint/jobs.json";

std::string propertyList(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n" +
         content + "\n</plist>\n";
}

/// launchctl in a graphical session, with a job that prints its process number and sleeps.
struct LaunchctlTest : Programs {
  LaunchctlTest() {
    environment["DISPLAY"] = ":7";
    control({"scenario", "protected"});
    putJob(
        propertyList("<dict><key>Label</key><string>job</string><key>ProgramArguments</key><array>"
                     "<string>/bin/sh</string><string>-c</string>"
                     "<string>echo \"$$ &lt;$DISPLAY&gt;\"; exec sleep 600</string></array>"
                     "<key>RunAtLoad</key><true/></dict>"));
  }

  ~LaunchctlTest() override {
    launchctl({"bootout", service});
    EXPECT_TRUE(processesWith(place.path()).empty());
  }

  void putJob(const std::string& text) const { place.write("root" + std::string(macPath), text); }

  int launchctl(const Arguments& arguments) const { return run(root + "/bin/launchctl", arguments).status; }
  int bootstrap() const { return launchctl({"bootstrap", domain, macPath}); }

  pid_t process() const { return state(jobsFile)[service]["process"]; }

  const std::string domain = "gui/" + std::to_string(::getuid());
  const std::string service = domain + "/job";
};

TEST_F(LaunchctlTest, StartsAJobInASessionOfItsOwnAndEndsIt) {
  EXPECT_EQ(launchctl({"bootout", service}), 3);
  EXPECT_EQ(launchctl({"kickstart", "-k", service}), 113);
  EXPECT_EQ(bootstrap(), 0);
  const auto first = process();
  EXPECT_EQ(::getsid(first), first);
  EXPECT_EQ(bootstrap(), 5);
  EXPECT_EQ(process(), first);
  EXPECT_TRUE(becomesTrue([&] {
    return place.read("root/Users/robin/Library/Logs/job.log") == std::to_string(first) + " <:7>\n";
  }));
  EXPECT_EQ(launchctl({"kickstart", "-k", service}), 0);
  const auto second = process();
  EXPECT_NE(second, first);
  EXPECT_EQ(::getsid(second), second);
  EXPECT_EQ(launchctl({"bootout", service}), 0);
  EXPECT_TRUE(processesWith(place.path()).empty());
  EXPECT_EQ(launchctl({"bootout", service}), 3);
}

TEST_F(LaunchctlTest, RefusesWithoutAGraphicalSessionOfThisUser) {
  EXPECT_EQ(launchctl({"bootstrap", domain + "1", macPath}), 125);
  environment.erase("DISPLAY");
  EXPECT_EQ(bootstrap(), 125);
  environment["WAYLAND_DISPLAY"] = "wayland-0";
  EXPECT_EQ(bootstrap(), 0);
}

TEST_F(LaunchctlTest, NeverEndsAnotherProcessWithTheNumberOfItsJob) {
  Process stranger({"/bin/sleep", "600"}, {});
  EXPECT_EQ(bootstrap(), 0);
  auto jobs = state(jobsFile);
  const pid_t job = jobs[service]["process"];
  jobs[service]["process"] = stranger.number();
  place.write("root" + std::string(jobsFile), jobs.dump());
  EXPECT_EQ(launchctl({"bootout", service}), 0);
  EXPECT_EQ(::kill(stranger.number(), 0), 0);
  ::kill(job, SIGKILL);
  EXPECT_TRUE(becomesTrue([&] { return processesWith(place.path()).empty(); }));
}

TEST_F(LaunchctlTest, LoadsNoDamagedPropertyList) {
  const std::string rows[] = {
      "",
      "{}",
      propertyList("<dict><key>Label</key><string>job</string></dict>"),
      propertyList("<dict><key>Label</key><string>job</string><key>ProgramArguments</key><array/></dict>"),
      propertyList("<dict><key>Label</key><string>job</string><key>ProgramArguments</key><array>"
                   "<string>/missing/program</string></array><key>RunAtLoad</key><true/></dict>"),
  };
  for (const auto& row : rows) {
    putJob(row);
    EXPECT_EQ(bootstrap(), 5) << row;
  }
  EXPECT_EQ(launchctl({"bootstrap", domain, "/Users/robin/nothing"}), 5);
}

TEST(PropertyList, IsReadWholeOrNotAtAll) {
  const auto text = propertyList(
      "<dict><key>a&amp;b</key><array><string>&lt;x&gt;&#13;</string><string/><integer>-3</integer>"
      "<false/></array><key>c</key><dict/></dict>");
  EXPECT_EQ(parsePropertyList(text), Json({{"a&b", {"<x>\r", "", -3, false}}, {"c", Json::object()}}));
  for (std::size_t length = 0; length + 1 < text.size(); ++length) {
    EXPECT_FALSE(parsePropertyList(text.substr(0, length))) << length;
  }
  for (const auto* content :
       {"<dict><string>a</string></dict>", "<string>a&b</string>", "<integer>4x</integer>",
        "<dict><key>a</key><true/><key>a</key><true/></dict>", "<true/><true/>"}) {
    EXPECT_FALSE(parsePropertyList(propertyList(content))) << content;
  }
  std::string deep;
  for (int level = 0; level < 100'000; ++level) deep += "<array>";
  EXPECT_FALSE(parsePropertyList(propertyList(deep)));
}

}  // namespace
}  // namespace ostrel::simulated
