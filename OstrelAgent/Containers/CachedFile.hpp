#pragma once

#include <optional>
#include <string>
#include <utility>

#include "Platform/Files.hpp"

namespace ostrel {

/// The contents of a file that may change at any time.
class CachedFile {
 public:
  /// A file of more than `maxBytes` is not read.
  CachedFile(std::string path, std::uint64_t maxBytes) : path_(std::move(path)), maxBytes_(maxBytes) {}

  /// Reads the file again when its stamp has changed or it could not be read the last time; true when the
  /// contents may differ. Blocks.
  bool update(const Files& files);

  /// The file's stamp at the last update.
  const std::optional<FileStamp>& stamp() const { return stamp_; }

  /// nullopt when the file is missing, too large or cannot be read.
  const std::optional<std::string>& bytes() const { return bytes_; }

 private:
  std::string path_;
  std::uint64_t maxBytes_;
  std::optional<FileStamp> stamp_;
  std::optional<std::string> bytes_;
};

}  // namespace ostrel
