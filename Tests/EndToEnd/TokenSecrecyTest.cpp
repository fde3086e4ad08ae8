#include <gtest/gtest.h>

#include <atomic>
#include <cctype>
#include <fstream>
#include <optional>
#include <sstream>
#include <thread>

#include "Tests/EndToEnd/Mac.hpp"
#include "Tests/Fakes/UnixServer.hpp"

namespace ostrel {
namespace {

// Each encoding writes its last characters differently.
constexpr const char* canary = "zq_enroll_Kanarienvogel \"9\\é/+";

std::string base64(const std::string& bytes) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  unsigned bits = 0;
  unsigned count = 0;
  for (const char byte : bytes) {
    bits = (bits << 8) | static_cast<unsigned char>(byte);
    for (count += 8; count >= 6; count -= 6) text += digits[(bits >> (count - 6)) & 0x3F];
  }
  return text;
}

std::string urlEscaped(const std::string& bytes, const char* hexadecimals, const char* blank) {
  std::string text;
  for (const char each : bytes) {
    const auto byte = static_cast<unsigned char>(each);
    if (std::isalnum(byte) != 0 || each == '_') {
      text += each;
    } else if (each == ' ') {
      text += blank;
    } else {
      text += {'%', hexadecimals[byte >> 4], hexadecimals[byte & 15]};
    }
  }
  return text;
}

/// A text as it is and in every encoding.
std::vector<std::string> formsOf(const std::string& text) {
  std::vector<std::string> forms = {text, urlEscaped(text, "0123456789ABCDEF", "%20"),
                                    urlEscaped(text, "0123456789abcdef", "%20"),
                                    urlEscaped(text, "0123456789ABCDEF", "+")};
  for (const bool isAscii : {false, true}) {
    const auto quoted = Json(text).dump(-1, ' ', isAscii);
    forms.push_back(quoted.substr(1, quoted.size() - 2));
  }
  // The bytes before it shift the base64 digits; digits shared with a neighbour are cut off.
  forms.push_back(base64(text));
  forms.push_back(base64("." + text).substr(2));
  forms.push_back(base64(".." + text).substr(3));
  return forms;
}

bool holdsCanary(const std::string& bytes) {
  static const auto forms = formsOf(canary);
  return std::ranges::any_of(forms, [&](const std::string& form) { return bytes.contains(form); });
}

/// Files of the folder that hold the canary, in their name or their bytes.
std::vector<std::string> findCanary(const std::string& folder) {
  std::vector<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const auto name = entry.path().string();
    if (holdsCanary(name) || (entry.is_regular_file() && holdsCanary(contentOf(name)))) found.push_back(name);
  }
  return found;
}

/// Looks at the arguments and the environment of every process of the Mac while it runs.
class Watcher {
 public:
  explicit Watcher(std::string mark) : thread_([this, mark = std::move(mark)] { watch(mark); }) {}
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;
  ~Watcher() { end(); }

  /// All that was seen.
  const std::string& end() {
    isEnded_ = true;
    if (thread_.joinable()) thread_.join();
    return seen_;
  }

 private:
  void watch(const std::string& mark) {
    while (!isEnded_) {
      for (const auto process : processesWith(mark)) {
        const auto folder = fs::path("/proc") / std::to_string(process);
        const auto both = contentOf(folder / "cmdline") + contentOf(folder / "environ");
        if (!seen_.contains(both)) seen_ += both;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  std::atomic<bool> isEnded_ = false;
  std::string seen_;
  std::thread thread_;
};

/// Replaces a program by a script that records arguments and environment and then runs the program.
void record(const Mac& mac, const std::string& path, const std::string& program) {
  fs::remove(path);
  std::ofstream(path) << "#!/bin/sh\ncat /proc/$$/cmdline /proc/$$/environ >>'" << mac.place / "started"
                      << "'\nexec '" << program << "' \"$@\"\n";
  fs::permissions(path, fs::perms::owner_all);
}

TEST(TokenSecrecy, TheSearchFindsEveryEncodingOfTheToken) {
  const TemporaryFolder place;
  const std::string text = canary;
  for (const auto& planted :
       {"a" + text + "b", Json({{"token", text}}).dump(), Json({{"token", text}}).dump(-1, ' ', true),
        "x=" + urlEscaped(text, "0123456789abcdef", "%20"), urlEscaped(text, "0123456789ABCDEF", "+") + "&y",
        base64(text + "!"), base64("1" + text + "23"), base64("12" + text),
        base64("{\"t\":\"" + text + "\"}")}) {
    EXPECT_TRUE(findCanary(place.path()).empty());
    const auto file = place.write("deep/inside/file", planted);
    EXPECT_EQ(findCanary(place.path()), std::vector{file}) << planted;
    fs::remove(file);
  }
  EXPECT_FALSE(holdsCanary(text.substr(0, text.size() - 1)));
}

TEST(TokenSecrecy, IsKeptThroughTheWholeOnboarding) {
  const Mac mac;
  mac.control({"scenario", "fresh-install"});
  mac.control({"install", "--without-token"});
  mac.control({"approval", "always"});
  const auto tools = fs::path(CONTROL).parent_path().string();
  fs::rename(mac.helper, mac.helper + ".real");
  record(mac, mac.helper, mac.helper + ".real");
  for (const std::string tool : {"usr/bin/security", "bin/launchctl", "usr/bin/profiles"}) {
    record(mac, mac.place / "root/" + tool, tools + tool.substr(tool.rfind('/')));
  }
  Watcher watcher(mac.place.path());
  std::string streams;
  const auto enterToken = "token " + std::string(canary) + "\n";

  const auto attempt = [&](const std::string& lines, const char* refusal) {
    Process window(mac.command("onboarding"), mac.environment);
    window.awaitOutput("[1] Enrol");
    window.write(lines);
    window.awaitOutput("Enrolling this device…");
    window.awaitOutput(refusal);
    window.write("quit\n");
    EXPECT_EQ(window.end(), 0);
    streams += window.output() + window.error();
  };

  {
    // A daemon that repeats every request.
    const UnixServer daemon(mac.place / "root/Library/Application Support/ostrel-agent-endpoint.control.sock",
                            [](int connection) {
                              const auto line = UnixServer::readLine(connection);
                              const Json answer = {{"ok", false}, {"error", "No: " + line + " " + canary}};
                              UnixServer::send(connection, answer.dump() + "\n");
                            });
    attempt("token x" + std::string(canary) + "\n" + enterToken, "No: ");
  }

  Process daemon({CONTROL, "serve"}, mac.environment);
  daemon.awaitOutput("Serving");
  for (const auto& answer : {"garbage", "close-early", "torn", "refuse"}) {
    mac.control({"misbehave", answer});
    attempt(enterToken, "token TEXT");
  }
  mac.control({"misbehave", "none"});

  mac.control({"trust", "cancel"});
  Process window(mac.command("onboarding"), mac.environment);
  window.awaitOutput("[1] Enrol");
  window.write(enterToken);
  window.awaitOutput("Setup can't finish until an administrator allows it.");
  mac.control({"trust", "accept"});
  window.write("press 1\n");
  window.awaitOutput("approval required →");
  mac.control({"deny"});
  window.awaitOutput("was not authorized.");
  mac.control({"fail-saves", "1", "NEVPNErrorDomain", "5", "denied"});
  window.write("press 1\n");
  window.awaitOutput("approval required →");
  mac.control({"approve"});
  window.awaitOutput("[1] Turn on network filter");
  window.write("press 1\n");
  window.awaitOutput("[1] Done");
  window.write(enterToken);
  window.awaitOutput("the window asks for no token");
  window.write("quit\n");
  EXPECT_EQ(window.end(), 0);
  streams += window.output() + window.error();

  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"status", "--json"}, {"diagnostics", "--network-extension", "on"}}) {
    auto command = arguments;
    command.insert(command.begin(), mac.helper);
    const auto ran = ostrel::run(command, mac.environment);
    EXPECT_EQ(ran.status, 0);
    streams += ran.output + ran.error;
  }
  mac.control({"stop"});
  EXPECT_EQ(daemon.end(), 0);
  streams += daemon.output() + daemon.error();

  const auto& seen = watcher.end();
  const auto started = mac.place.read("started");
  EXPECT_TRUE(seen.contains(std::string("OstrelAgent\0activate\0", 21)));
  EXPECT_TRUE(started.contains("add-trusted-cert"));
  EXPECT_TRUE(started.contains("status"));
  EXPECT_FALSE(holdsCanary(seen));
  EXPECT_FALSE(holdsCanary(streams)) << streams;
  EXPECT_EQ(findCanary(mac.place.path()), std::vector<std::string>());
}

}  // namespace
}  // namespace ostrel
