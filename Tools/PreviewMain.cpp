#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "OstrelAgent/Panel/PanelContent.hpp"
#include "OstrelAgent/Status/Verdict.hpp"
#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/Translation.hpp"
#include "Platform/Linux/LinuxBundle.hpp"
#include "Platform/Posix/PosixClock.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixLog.hpp"
#include "Platform/Posix/PosixTimeFormat.hpp"
#include "Shells/Console/AgentWindowText.hpp"
#include "Shells/Console/AlertText.hpp"
#include "Shells/Console/ContainersText.hpp"
#include "Shells/Console/OnboardingText.hpp"
#include "Shells/Console/PanelText.hpp"
#include "Shells/Console/PrintableText.hpp"
#include "Tools/OnboardingStages.hpp"
#include "Tools/PreviewAlerts.hpp"
#include "Tools/PreviewContainers.hpp"
#include "Tools/PreviewContainersJson.hpp"
#include "Tools/PreviewDocument.hpp"
#include "Tools/PreviewInput.hpp"
#include "Tools/PreviewJson.hpp"
#include "Tools/PreviewOptions.hpp"
#include "Tools/PreviewPictures.hpp"
#include "Tools/PreviewUsage.hpp"
#include "Tools/PreviewWindow.hpp"

namespace ostrel {

namespace {

void print(std::FILE* stream, std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); }

[[nodiscard]] std::expected<std::string, std::string> readAll(std::FILE* file, const std::string& name) {
  std::string bytes;
  std::array<char, 65536> buffer;
  while (std::feof(file) == 0 && std::ferror(file) == 0) {
    const auto count = std::fread(buffer.data(), 1, buffer.size(), file);
    bytes.append(buffer.data(), count);
  }
  if (std::ferror(file) != 0) return std::unexpected(name + " cannot be read");
  return bytes;
}

[[nodiscard]] std::expected<std::string, std::string> readInput(const std::optional<std::string>& path) {
  if (!path) return readAll(stdin, "standard input");
  std::FILE* file = std::fopen(path->c_str(), "rb");
  if (file == nullptr) return std::unexpected(*path + " cannot be read");
  auto bytes = readAll(file, *path);
  (void)std::fclose(file);
  return bytes;
}

/// The panel in one line: the tooltip, then the problems.
std::string summaryLine(const Snapshot& snapshot, const PanelContent& content) {
  std::vector<std::string> clauses = {ProtectionVerdict::of(snapshot).menuBarDescription()};
  if (content.header.deadlineLine) clauses.push_back(*content.header.deadlineLine);
  if (content.statusError) clauses.push_back(content.statusError->text);
  if (content.update) clauses.push_back(content.update->state.text + " " + content.update->version);
  for (const auto& card : content.cards) {
    const bool addsNothing = card.state.text.empty() || card.state.text == card.title;
    clauses.push_back(addsNothing ? card.title : card.title + ": " + card.state.text);
  }
  std::string line;
  for (const auto& clause : clauses) line += (line.empty() ? "" : " | ") + clause;
  return printableText(line) + "\n";
}

int complain(const std::string& reason) {
  print(stderr, "ostrel-preview: " + printableText(reason) + "\n");
  return 1;
}

void printJson(const nlohmann::ordered_json& json, bool isOneLine) {
  print(stdout, json.dump(isOneLine ? -1 : 2) + "\n");
}

/// Reports an error, also on standard output where an object is expected.
int fail(const PreviewOptions& options, const std::string& reason) {
  if (options.mode == PreviewOptions::Mode::json) printJson({{"error", reason}}, true);
  return complain(reason);
}

class Preview {
 public:
  Preview(const PreviewOptions& options, const Bundle& bundle, Log& log)
      : options_(options), bundle_(bundle), log_(log), timeFormat_(options.language) {}

  /// Shows every document of the input; returns the exit status.
  int run() {
    const auto input = readInput(options_.file);
    if (!input) return complain(input.error());
    const auto documents = previewDocuments(*input);
    if (documents.empty()) return fail("the input is empty", false);
    if (options_.mode == PreviewOptions::Mode::pictures && documents.size() > 1) {
      return fail("a picture shows one report, but there are " + std::to_string(documents.size()), false);
    }
    int status = 0;
    for (const auto& document : documents) status = std::max(status, answer(document, documents.size() > 1));
    return status;
  }

 private:
  int answer(const PreviewDocument& document, bool isOneOfMany) {
    auto reading = readPreviewDocument(document.bytes);
    if (!reading) {
      const auto place = isOneOfMany ? "line " + std::to_string(document.linesBefore + 1) + ": " : "";
      return fail(place + reading.error().description(document.linesBefore), isOneOfMany);
    }
    const auto& snapshot = reading->model.snap;
    if (options_.window) return answerWindow(*reading, document.isLine);
    reading->model.panelMaxHeight = unboundedHeight;
    const auto content =
        panelContent(reading->model, reading->now.value_or(clock_.now()), times_, allPanelActions());
    if (options_.mode == PreviewOptions::Mode::pictures) {
      const auto written = writePictures(options_, ProtectionVerdict::of(snapshot), content, bundle_, log_);
      return written ? 0 : complain(written.error());
    }
    if (options_.mode == PreviewOptions::Mode::json) {
      printJson(previewJson(snapshot, content), document.isLine);
    } else {
      print(stdout, isOneOfMany ? summaryLine(snapshot, content) : panelText(content, ButtonMarks::plain));
    }
    return 0;
  }

  /// The page of the situation, or one that fits the report.
  std::expected<ContainersPage, std::string> containersPage(const StatusPanelModel& model) const {
    if (!options_.situation) return previewContainersPage(model);
    const auto input = readInput(options_.situation);
    if (!input) return std::unexpected(input.error());
    auto page = readContainersPage(*input);
    if (!page) return std::unexpected(page.error().description());
    return *std::move(page);
  }

  int answerWindow(const PreviewReading& reading, bool isLine) {
    const auto containers = containersPage(reading.model);
    if (!containers) return fail(containers.error(), isLine);
    const auto actions = allPanelActions();
    const auto content = agentWindowContent(*options_.window, {.model = reading.model,
                                                               .containers = *containers,
                                                               .now = reading.now.value_or(clock_.now()),
                                                               .times = times_,
                                                               .available = actions});
    if (options_.mode == PreviewOptions::Mode::pictures) {
      const auto written = writeAgentWindowPicture(options_, content, bundle_, log_);
      return written ? 0 : complain(written.error());
    }
    if (options_.mode == PreviewOptions::Mode::json) {
      printJson(agentWindowJson(content, *containers), isLine);
    } else {
      print(stdout, agentWindowText(content, ButtonMarks::plain).text);
    }
    return 0;
  }

  /// Reports an error, also on standard output where an answer is expected.
  int fail(const std::string& reason, bool isOneOfMany) const {
    if (isOneOfMany && options_.mode == PreviewOptions::Mode::text) {
      print(stdout, printableText(reason) + "\n");
    }
    return ostrel::fail(options_, reason);
  }

  static constexpr double unboundedHeight = 100'000;

  const PreviewOptions& options_;
  const Bundle& bundle_;
  Log& log_;
  PosixClock clock_;
  PosixTimeFormat timeFormat_;
  TimeTexts times_{.clockTime = [this](Date date) { return timeFormat_.clockTime(date); },
                   .shortDate = [this](Date date) { return timeFormat_.shortDate(date); }};
};

/// The executable of the bundle in the build folder of this tool.
std::string agentPath() {
  auto tool = currentExecutablePath();
  for (int i = 0; i < 2; ++i) tool.resize(std::min(tool.rfind('/'), tool.size()));
  return tool + "/OstrelAgent.app/Contents/MacOS/OstrelAgent";
}

void exportStrings() {
  print(stdout,
        "/* The texts of Ostrel Agent. Keep the keys and the specifiers: %@ a text, %d a number. */\n");
  for (const auto& [key, text] : Copy::english()) print(stdout, stringsLine(key, text));
}

int showOnboarding(const PreviewOptions& options, const Bundle& bundle, Log& log) {
  const auto& stage = *options.onboarding;
  if (stage == "list") {
    for (const auto name : onboardingStageNames()) print(stdout, std::string(name) + "\n");
    return 0;
  }
  const auto content = onboardingAt(stage);
  if (!content) return complain("there is no stage " + stage);
  if (!options.png) {
    print(stdout, onboardingText(*content));
    return 0;
  }
  const auto written = writeOnboardingPicture(options, *content, bundle, log);
  return written ? 0 : complain(written.error());
}

int showAlert(const PreviewOptions& options, const Bundle& bundle, Log& log) {
  const auto& name = *options.alert;
  if (name == "list") {
    for (const auto each : previewAlertNames()) print(stdout, std::string(each) + "\n");
    return 0;
  }
  const auto alert = previewAlert(name);
  if (!alert) return complain("there is no alert " + name);
  if (!options.png) {
    print(stdout, alertText(*alert));
    return 0;
  }
  const auto written = writeAlertPicture(options, *alert, bundle, log);
  return written ? 0 : complain(written.error());
}

int showContainers(const PreviewOptions& options) {
  const auto input = readInput(options.file);
  if (!input) return complain(input.error());
  const auto page = readContainersPage(*input);
  if (!page) return fail(options, page.error().description());
  if (options.mode == PreviewOptions::Mode::json) {
    printJson(containersJson(*page), false);
  } else {
    const auto content = page->content();
    print(stdout,
          containersListText(content) + containerDetailText(content) + "\n" + containersInsideText(content));
  }
  return 0;
}

int run(std::span<const char* const> arguments) {
  const auto options = PreviewOptions::parse(arguments);
  if (!options) return print(stderr, previewUsage), 2;
  switch (options->mode) {
    case PreviewOptions::Mode::help:
      print(stdout, std::string(previewUsage) + std::string(previewHelp));
      return 0;
    case PreviewOptions::Mode::exportStrings:
      exportStrings();
      return 0;
    case PreviewOptions::Mode::text:
    case PreviewOptions::Mode::json:
    case PreviewOptions::Mode::pictures:
      break;
  }
  const PosixFiles files([](std::string_view path) { return std::string(path); });
  const LinuxBundle bundle(files, languageCandidates(options->language, "", ""), agentPath());
  PosixLog log;
  installTranslation(bundle, log);
  if (options->onboarding) return showOnboarding(*options, bundle, log);
  if (options->alert) return showAlert(*options, bundle, log);
  if (options->isContainers) return showContainers(*options);
  return Preview(*options, bundle, log).run();
}

}  // namespace

}  // namespace ostrel

int main(int count, char** arguments) {
  const std::span<const char* const> all(arguments, static_cast<std::size_t>(count));
  return ostrel::run(all.subspan(all.empty() ? 0 : 1));
}
