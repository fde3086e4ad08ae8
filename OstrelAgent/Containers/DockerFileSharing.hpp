#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel {

/// Which folders of the Mac Docker's virtual machine sees.
struct DockerFileSharing {
  /// The settings files beneath the home folder, in the order of preference.
  static std::vector<std::string> settingsFiles(std::string_view home);

  /// Whether the folder of the trust bundle is shared, by the contents of the settings files; nullopt when
  /// none is usable, or the first usable one has no list of folders.
  static std::optional<bool> sharesLibrary(const std::vector<std::optional<std::string>>& settings);

  /// True when one of the folders is the trust bundle's or above it.
  static bool coversBundle(const std::vector<std::string>& folders);
};

}  // namespace ostrel
