#include "OstrelAgent/Extension/MenuBarAgent.hpp"

#include <algorithm>
#include <cerrno>

#include "OstrelAgent/Text/Utf8.hpp"

namespace ostrel {

namespace {

constexpr const char* label = "tech.brenn.ostrel-agent.menubar";

/// XML 1.0 cannot represent other control characters, nor U+FFFE and U+FFFF.
bool isXmlText(std::string_view text) {
  const auto isControl = [](char c) {
    return static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n' && c != '\r';
  };
  return isUtf8(text) && std::ranges::none_of(text, isControl) && !text.contains("\uFFFE") &&
         !text.contains("\uFFFF");
}

std::string escaped(std::string_view text) {
  std::string xml;
  for (const char c : text) {
    switch (c) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      case '\r':  // else read as a line feed
        xml += "&#13;";
        break;
      default:
        xml += c;
    }
  }
  return xml;
}

}  // namespace

MenuBarAgent::MenuBarAgent(const Bundle& bundle, Files& files, ChildProcesses& childProcesses,
                           StandardStreams& streams, const UserAccount& account)
    : bundle_(&bundle),
      files_(&files),
      childProcesses_(&childProcesses),
      streams_(&streams),
      folder_(account.homeFolder + "/Library/LaunchAgents"),
      path_(folder_ + "/" + label + ".plist"),
      session_("gui/" + std::to_string(account.userIdentifier)),
      job_(session_ + "/" + label) {}

void MenuBarAgent::install() const {
  const auto executable = bundle_->executablePath();
  if (executable.empty()) return;
  if (const auto written = writeJobFile(executable); !written) {
    return streams_->writeOutput("menu bar: could not write LaunchAgent (" + written.error().description +
                                 ") — skipped\n");
  }
  if (!launchctl({"bootout", job_})) return;
  const auto status = launchctl({"bootstrap", session_, path_});
  if (!status) return;
  streams_->writeOutput(*status == 0
                            ? "menu bar:    status UI running (now and at every login)\n"
                            : "menu bar:    LaunchAgent written; the status UI starts at next login\n");
}

void MenuBarAgent::restart() const {
  const std::vector<std::string> kickstart = {"kickstart", "-k", job_};
  const auto status = launchctl(kickstart);
  if (!status || *status == 0) return;
  if (launchctl({"bootstrap", session_, path_})) (void)launchctl(kickstart);
}

void MenuBarAgent::remove() const {
  if (launchctl({"bootout", job_})) (void)files_->remove(path_);
}

std::optional<std::int32_t> MenuBarAgent::launchctl(const std::vector<std::string>& arguments) const {
  const auto result = childProcesses_->run({.executable = "/bin/launchctl",
                                            .arguments = arguments,
                                            .output = ChildStream::discarded,
                                            .error = ChildStream::discarded});
  if (result) return result->status;
  if (isHostShuttingDown(result.error())) return std::nullopt;
  return launchctlNotStarted;
}

bool MenuBarAgent::isInstalled() const { return files_->exists(path_); }

std::expected<std::string, PlatformError> MenuBarAgent::jobFile(std::string_view executable) {
  if (!isXmlText(executable)) {
    return std::unexpected(PlatformError{posixErrorDomain, EILSEQ,
                                         "the program's path has characters that no property list can hold"});
  }
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>Label</key>
	<string>)" +
         std::string(label) + R"(</string>
	<key>ProcessType</key>
	<string>Interactive</string>
	<key>ProgramArguments</key>
	<array>
		<string>)" +
         escaped(executable) + R"(</string>
		<string>menubar</string>
	</array>
	<key>RunAtLoad</key>
	<true/>
</dict>
</plist>
)";
}

std::expected<void, PlatformError> MenuBarAgent::writeJobFile(std::string_view executable) const {
  const auto bytes = jobFile(executable);
  if (!bytes) return std::unexpected(bytes.error());
  if (auto made = files_->makeFolders(folder_); !made) return made;
  return files_->writeAtomically(path_, *bytes);
}

}  // namespace ostrel
