#include "Platform/Linux/LinuxBundle.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "Platform/Posix/PosixError.hpp"

namespace ostrel {

namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

bool isLanguage(std::string_view primary) {
  const auto isLowercase = [](char c) { return c >= 'a' && c <= 'z'; };
  return (primary.size() == 2 || primary.size() == 3) && std::ranges::all_of(primary, isLowercase);
}

bool isSubtagText(std::string_view text) {
  return std::ranges::all_of(text, [](char c) {
    return c == '-' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  });
}

}  // namespace

std::vector<std::string> languageCandidates(std::string_view lcAll, std::string_view lcMessages,
                                            std::string_view lang) {
  const auto setting = !lcAll.empty() ? lcAll : !lcMessages.empty() ? lcMessages : lang;
  std::string language(setting.substr(0, setting.find_first_of(".@")));
  std::ranges::replace(language, '_', '-');
  const auto primary = language.substr(0, language.find('-'));
  if (!isLanguage(primary) || primary == "en" || !isSubtagText(language)) return {};
  std::vector<std::string> candidates = {language};
  while (candidates.back() != primary) {
    candidates.push_back(candidates.back().substr(0, candidates.back().rfind('-')));
  }
  return candidates;
}

std::vector<std::string> languagesOfEnvironment() {
  return languageCandidates(environment("LC_ALL"), environment("LC_MESSAGES"), environment("LANG"));
}

std::string currentExecutablePath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

LinuxBundle::LinuxBundle(const Files& files, std::vector<std::string> languages, std::string executablePath)
    : files_(files), languages_(std::move(languages)), executablePath_(std::move(executablePath)) {}

std::string LinuxBundle::path() const {
  return std::filesystem::path(executablePath_).parent_path().parent_path().parent_path().string();
}

std::expected<std::optional<std::string>, PlatformError> LinuxBundle::localizedTable(
    const std::string& name) const {
  const auto folder = path() + "/Contents/Resources/";
  const auto file = ".lproj/" + name + ".strings";
  for (const auto& language : languages_) {
    auto table = files_.read(std::string(folder).append(language).append(file));
    if (table) return std::move(*table);
    if (!isPosixError(table.error(), ENOENT)) return std::unexpected(std::move(table.error()));
  }
  return std::nullopt;
}

std::expected<std::string, PlatformError> LinuxBundle::resource(const std::string& name) const {
  return files_.read(path() + "/Contents/Resources/" + name);
}

}  // namespace ostrel
