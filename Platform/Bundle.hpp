#pragma once

#include <expected>
#include <optional>
#include <string>

#include "Platform/PlatformError.hpp"

namespace ostrel {

/// The application bundle (Bundle.main). Any thread; paths are absolute and without a slash at the end.
class Bundle {
 public:
  virtual ~Bundle() = default;

  /// The bundle's folder, ".../OstrelAgent.app".
  virtual std::string path() const = 0;

  /// The program's own executable.
  virtual std::string executablePath() const = 0;

  /// Bytes of the table "Contents/Resources/<language>.lproj/<name>.strings" in the user's language; nullopt
  /// when the bundle has no such table, an error when it cannot be read.
  [[nodiscard]] virtual std::expected<std::optional<std::string>, PlatformError> localizedTable(
      const std::string& name) const = 0;

  /// Bytes of the file "Contents/Resources/<name>".
  [[nodiscard]] virtual std::expected<std::string, PlatformError> resource(const std::string& name) const = 0;
};

}  // namespace ostrel
