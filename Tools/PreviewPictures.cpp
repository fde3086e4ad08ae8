#include "Tools/PreviewPictures.hpp"

#include <cstdio>

#include "Hosts/DesktopPlugIns.hpp"
#include "OstrelAgent/Window/AgentWindowModel.hpp"

namespace ostrel {

namespace {

using Picture = std::expected<std::string, std::string>;

[[nodiscard]] std::expected<void, std::string> writeFile(const std::string& path, const Picture& picture) {
  if (!picture) return std::unexpected(picture.error());
  std::FILE* file = std::fopen(path.c_str(), "wb");
  const bool isWritten =
      file != nullptr && std::fwrite(picture->data(), 1, picture->size(), file) == picture->size();
  const bool isClosed = file != nullptr && std::fclose(file) == 0;
  if (!isWritten || !isClosed) return std::unexpected(path + " cannot be written");
  return {};
}

DesktopTheme themeOf(const PreviewOptions& options) {
  return {.appearance = options.isDark ? Appearance::dark : Appearance::light,
          .reducesMotion = true,
          .textScale = options.textScale};
}

}  // namespace

std::expected<void, std::string> writePictures(const PreviewOptions& options,
                                               const ProtectionVerdict& verdict, const PanelContent& content,
                                               const Bundle& bundle, Log& log) {
  const auto plugIn = loadShellPlugIn(bundle);
  if (!plugIn) return std::unexpected(plugIn.error());
  const auto pictures = (*plugIn)->makePictures(desktopServices(bundle, log), options.scale);
  const auto theme = themeOf(options);
  std::expected<void, std::string> written;
  if (options.icon) {
    const auto icon = MenuBarIcon::of(verdict, MenuBarPalette::matching(theme.appearance), true, false);
    written = writeFile(*options.icon, pictures->icon(icon, options.scale));
  }
  if (written && options.png) {
    written = writeFile(*options.png, pictures->panel(content, theme));
  }
  return written;
}

std::expected<void, std::string> writeOnboardingPicture(const PreviewOptions& options,
                                                        const OnboardingContent& content,
                                                        const Bundle& bundle, Log& log) {
  const auto plugIn = loadShellPlugIn(bundle);
  if (!plugIn) return std::unexpected(plugIn.error());
  const auto pictures = (*plugIn)->makePictures(desktopServices(bundle, log), options.scale);
  return writeFile(options.png.value_or(""), pictures->onboarding(content, themeOf(options)));
}

std::expected<void, std::string> writeAlertPicture(const PreviewOptions& options, const Alert& alert,
                                                   const Bundle& bundle, Log& log) {
  const auto plugIn = loadShellPlugIn(bundle);
  if (!plugIn) return std::unexpected(plugIn.error());
  const auto pictures = (*plugIn)->makePictures(desktopServices(bundle, log), options.scale);
  return writeFile(options.png.value_or(""), pictures->alert(alert, themeOf(options)));
}

std::expected<void, std::string> writeAgentWindowPicture(const PreviewOptions& options,
                                                         const AgentWindowContent& content,
                                                         const Bundle& bundle, Log& log) {
  const auto plugIn = loadShellPlugIn(bundle);
  if (!plugIn) return std::unexpected(plugIn.error());
  const auto pictures = (*plugIn)->makePictures(desktopServices(bundle, log), options.scale);
  const auto size = options.size.value_or(AgentWindowModel::firstSize);
  return writeFile(options.png.value_or(""), pictures->agentWindow(content, size, themeOf(options)));
}

}  // namespace ostrel
