#include <link.h>

#include <filesystem>
#include <fstream>

#include "Platform/Posix/PlugIn.hpp"

namespace ostrel {

std::optional<std::string> faultOfLibraryFile(const std::string& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error) return error.message();
  ElfW(Ehdr) header{};
  std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(&header), sizeof header);
  // Linkers write the section table last, so a complete file contains it.
  const auto end = header.e_shoff + std::uint64_t{header.e_shnum} * header.e_shentsize;
  const bool isWhole = header.e_shoff > 0 && header.e_shoff <= size && end <= size;
  return isWhole ? std::nullopt : std::optional("the file is incomplete");
}

}  // namespace ostrel
