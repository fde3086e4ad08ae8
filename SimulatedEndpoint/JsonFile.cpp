#include "SimulatedEndpoint/JsonFile.hpp"

#include <cerrno>

namespace ostrel::simulated {

std::expected<Json, std::string> readJsonFile(const Files& files, const std::string& path) {
  const auto text = files.read(path);
  if (!text && text.error().domain == posixErrorDomain && text.error().code == ENOENT) return Json();
  if (!text) return std::unexpected("cannot read " + path + ": " + text.error().description);
  auto value = parseJson(*text);
  if (!value) return std::unexpected(path + " " + value.error());
  return value;
}

std::expected<void, std::string> writeJsonFile(Files& files, const std::string& path, const Json& value) {
  auto written = files.makeFolders(path.substr(0, path.rfind('/')));
  if (written) written = files.writeAtomically(path, printJson(value));
  if (!written) return std::unexpected("cannot write " + path + ": " + written.error().description);
  return {};
}

}  // namespace ostrel::simulated
