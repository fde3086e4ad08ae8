#include "SimulatedEndpoint/ControlMac.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <string_view>

#include "SimulatedEndpoint/Applications.hpp"
#include "SimulatedEndpoint/Json.hpp"
#include "SimulatedEndpoint/MacFiles.hpp"
#include "SimulatedEndpoint/TimeOffset.hpp"

namespace ostrel::simulated {

namespace {

using Words = std::span<const std::string>;
using Done = std::expected<void, std::string>;

struct Mac {
  Files& files;
  const HostRoot& root;
};

ControlResult reported(const Done& done, const std::string& text) {
  return done ? ControlResult{0, text + "\n"} : failed(done.error());
}

std::optional<Date> now() {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

ControlResult startApplication(Words words, const Applications& applications) {
  const auto launched = words.size() == 4 ? parseRfc3339(words[3]) : now();
  if (!launched) {
    return usageFault(inQuotes(words[3]) + " is no time; write it as in `--launched 2025-01-02T03:04:05Z`");
  }
  return reported(applications.start(words[1], *launched), words[1] + " runs");
}

ControlResult app(Words words, const Mac& mac) {
  const auto* usage =
      "app takes install, remove, start or stop and an identifier, and start perhaps a time, as in "
      "`app start com.example.app --launched 2025-01-02T03:04:05Z`";
  const bool hasTime = words.size() == 4 && words[0] == "start" && words[2] == "--launched";
  if ((words.size() != 2 && !hasTime) || words[1].empty()) return usageFault(usage);
  const Applications applications(mac.files, mac.root);
  const auto& identifier = words[1];
  if (words[0] == "start") return startApplication(words, applications);
  if (words[0] == "install") return reported(applications.install(identifier), identifier + " is installed");
  if (words[0] == "remove") return reported(applications.remove(identifier), identifier + " is removed");
  if (words[0] == "stop") return reported(applications.stop(identifier), identifier + " is stopped");
  return usageFault(usage);
}

ControlResult tool(Words words, const Mac& mac) {
  const bool isWhole = words.size() == 2 && isToolName(words[1]);
  const MacFiles macFiles(mac.files, mac.root);
  if (isWhole && words[0] == "install") {
    return reported(macFiles.installTool(words[1]), words[1] + " is installed");
  }
  if (isWhole && words[0] == "remove") {
    return reported(macFiles.removeTool(words[1]), words[1] + " is removed");
  }
  return usageFault("tool takes install or remove and a name without slash, as in `tool install colima`");
}

ControlResult process(Words words, const Mac& mac) {
  const bool isWhole = words.size() == 2 && !words[1].empty();
  const Applications applications(mac.files, mac.root);
  if (isWhole && words[0] == "start") {
    return reported(applications.startProcess(words[1]), words[1] + " runs");
  }
  if (isWhole && words[0] == "stop") {
    return reported(applications.stopProcess(words[1]), words[1] + " is stopped");
  }
  return usageFault("process takes start or stop and a name, as in `process start vfkit`");
}

ControlResult dockerSharing(Words words, const Mac& mac) {
  const MacFiles macFiles(mac.files, mac.root);
  if (words.size() == 1 && words[0] == "none") {
    return reported(macFiles.removeDockerSettings(), "Docker Desktop has no settings");
  }
  if (words.empty() || std::ranges::count(words, "") > 0 || std::ranges::count(words, "none") > 0) {
    return usageFault("docker-sharing takes paths, or none, as in `docker-sharing /Users /Volumes`");
  }
  std::string paths;
  for (const auto& path : words) paths += (paths.empty() ? "" : ", ") + path;
  return reported(macFiles.shareWithDocker(words), "Docker Desktop shares " + paths);
}

ControlResult bundle(Words words, const Mac& mac) {
  using Certificates = MacFiles::Certificates;
  const MacFiles macFiles(mac.files, mac.root);
  if (words.size() == 1 && words[0] == "remove") {
    return reported(macFiles.removeBundle(), "The trust bundle is removed");
  }
  const std::string number = words.size() == 2 ? words[1] : "1";
  if (words.empty() || words.size() > 2 || words[0] != "publish" || (number != "1" && number != "2")) {
    return usageFault("bundle takes remove, or publish and perhaps 1 or 2, as in `bundle publish 2`");
  }
  const auto certificates = number == "1" ? Certificates::one : Certificates::two;
  return reported(
      macFiles.publishBundle(certificates),
      "The trust bundle holds the device certificate" + std::string(number == "1" ? "" : " and a second"));
}

struct Command {
  std::string_view name;
  ControlResult (*run)(Words words, const Mac& mac);
};

constexpr std::array commands = {
    Command{"app", app},         Command{"tool", tool},
    Command{"process", process}, Command{"docker-sharing", dockerSharing},
    Command{"bundle", bundle},
};

}  // namespace

std::optional<ControlResult> runMacCommand(Words arguments, Files& files, const HostRoot& root) {
  if (arguments.empty()) return std::nullopt;
  const auto command = std::ranges::find(commands, arguments.front(), &Command::name);
  if (command == commands.end()) return std::nullopt;
  return command->run(arguments.subspan(1), {files, root});
}

}  // namespace ostrel::simulated
