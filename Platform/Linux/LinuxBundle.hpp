#pragma once

#include <string_view>
#include <vector>

#include "Platform/Bundle.hpp"
#include "Platform/Files.hpp"

namespace ostrel {

/// Languages to look for, the nearest first ("de-AT", "de"), from the values of LC_ALL, LC_MESSAGES and LANG;
/// empty for English and for invalid values.
std::vector<std::string> languageCandidates(std::string_view lcAll, std::string_view lcMessages,
                                            std::string_view lang);

/// The same from the process's environment.
std::vector<std::string> languagesOfEnvironment();

/// Path of the running program's executable, or an empty text when the system does not report it.
std::string currentExecutablePath();

/// The bundle around an executable ".../OstrelAgent.app/Contents/MacOS/OstrelAgent".
class LinuxBundle final : public Bundle {
 public:
  LinuxBundle(const Files& files, std::vector<std::string> languages,
              std::string executablePath = currentExecutablePath());

  std::string path() const override;
  std::string executablePath() const override { return executablePath_; }
  [[nodiscard]] std::expected<std::optional<std::string>, PlatformError> localizedTable(
      const std::string& name) const override;
  [[nodiscard]] std::expected<std::string, PlatformError> resource(const std::string& name) const override;

 private:
  const Files& files_;
  const std::vector<std::string> languages_;
  const std::string executablePath_;
};

}  // namespace ostrel
