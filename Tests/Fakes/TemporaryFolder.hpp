#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace ostrel {

/// The bytes of a file; as many as could be read where it fails, as files of a process do that ends
/// meanwhile.
inline std::string contentOf(const std::filesystem::path& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return std::move(bytes).str();
}

/// A folder of one test or benchmark, removed with the object.
class TemporaryFolder {
 public:
  TemporaryFolder() : path_(std::filesystem::temp_directory_path() / ("ostrel-test-" + std::string(6, 'X'))) {
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder at " + path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }

  const std::string& path() const { return path_; }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  /// Writes a file with the folders above it; gives its path.
  std::string write(std::string_view name, std::string_view bytes) const {
    const auto path = *this / name;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  std::string read(std::string_view name) const { return contentOf(*this / name); }

 private:
  std::string path_;
};

}  // namespace ostrel
