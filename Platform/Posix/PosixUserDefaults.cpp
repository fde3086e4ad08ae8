#include "Platform/Posix/PosixUserDefaults.hpp"

#include <cerrno>
#include <nlohmann/json.hpp>
#include <utility>

#include "Platform/Posix/FileLock.hpp"
#include "Platform/Posix/PosixError.hpp"

namespace ostrel {

namespace {

using Json = nlohmann::json;

// A date is {"date": milliseconds}, dates by name are {"dates": {name: milliseconds}}.
constexpr const char* dateMember = "date";
constexpr const char* datesMember = "dates";

// Deeper than any value; a file nested deeper is damaged, and writing it could exhaust the stack.
constexpr int deepestNesting = 16;

std::optional<Json> parsedSettings(const std::string& bytes) {
  bool isTooDeep = false;
  const auto watchDepth = [&isTooDeep](int depth, Json::parse_event_t, Json&) {
    isTooDeep = isTooDeep || depth > deepestNesting;
    return !isTooDeep;
  };
  auto settings = Json::parse(bytes, watchDepth, false);
  if (isTooDeep || !settings.is_object()) return std::nullopt;
  return settings;
}

bool isSignedNumber(const Json& json) {
  return json.is_number_integer() &&
         (!json.is_number_unsigned() || std::in_range<std::int64_t>(json.get<std::uint64_t>()));
}

std::optional<Date> readDate(const Json& json) {
  if (!isSignedNumber(json)) return std::nullopt;
  return Date(std::chrono::milliseconds(json.get<std::int64_t>()));
}

std::optional<DefaultsValue> readDates(const Json& json) {
  if (!json.is_object()) return std::nullopt;
  std::map<std::string, Date> dates;
  for (const auto& [name, number] : json.items()) {
    if (const auto date = readDate(number)) dates.emplace(name, *date);
  }
  return dates;
}

/// The texts of a list, without its other elements.
DefaultsValue readTexts(const Json& json) {
  std::vector<std::string> texts;
  for (const auto& text : json) {
    if (text.is_string()) texts.push_back(text.get<std::string>());
  }
  return texts;
}

/// A list of numbers when it has nothing else, else one of texts.
DefaultsValue readList(const Json& json) {
  std::vector<double> numbers;
  for (const auto& number : json) {
    if (!number.is_number()) return readTexts(json);
    numbers.push_back(number.get<double>());
  }
  return numbers.empty() ? readTexts(json) : numbers;
}

std::optional<DefaultsValue> readValue(const Json& json) {
  if (json.is_boolean()) return json.get<bool>();
  if (isSignedNumber(json)) return json.get<std::int64_t>();
  if (json.is_string()) return json.get<std::string>();
  if (json.is_array()) return readList(json);
  if (!json.is_object() || json.size() != 1) return std::nullopt;
  if (const auto date = json.find(dateMember); date != json.end()) return readDate(*date);
  if (const auto dates = json.find(datesMember); dates != json.end()) return readDates(*dates);
  return std::nullopt;
}

/// The readable values of the file.
std::map<std::string, DefaultsValue> valuesOf(const std::string& bytes) {
  std::map<std::string, DefaultsValue> values;
  const auto settings = parsedSettings(bytes);
  if (!settings) return values;
  for (const auto& [key, json] : settings->items()) {
    if (auto value = readValue(json)) values.emplace(key, std::move(*value));
  }
  return values;
}

struct JsonOfValue {
  template <class Plain>
  Json operator()(const Plain& value) const {
    return value;
  }
  Json operator()(Date date) const { return {{dateMember, date.time_since_epoch().count()}}; }
  Json operator()(const std::map<std::string, Date>& dates) const {
    Json numbers = Json::object();
    for (const auto& [name, date] : dates) numbers[name] = date.time_since_epoch().count();
    return {{datesMember, std::move(numbers)}};
  }
};

/// The stored settings to change, or empty ones after a damaged file was moved aside.
[[nodiscard]] std::expected<Json, PlatformError> settingsToChange(Files& files, const std::string& path) {
  const auto bytes = files.read(path);
  if (!bytes && isPosixError(bytes.error(), ENOENT)) return Json::object();
  if (!bytes) return std::unexpected(bytes.error());
  if (auto settings = parsedSettings(*bytes)) return std::move(*settings);
  auto aside = files.writeAtomically(path + ".damaged", *bytes);
  if (!aside) return std::unexpected(std::move(aside.error()));
  return Json::object();
}

[[nodiscard]] std::expected<void, PlatformError> write(Files& files, const std::string& path,
                                                       const Json& settings) try {
  const auto bytes = settings.dump(1);
  if (auto made = files.makeFolders(path.substr(0, path.rfind('/'))); !made) return made;
  return files.writeAtomically(path, bytes);
} catch (const Json::type_error&) {
  return std::unexpected(posixError(EILSEQ));  // JSON cannot hold text that is not UTF-8
}

}  // namespace

PosixUserDefaults::PosixUserDefaults(Files& files, std::string path, std::string lockPath)
    : files_(files), path_(std::move(path)), lockPath_(std::move(lockPath)) {}

std::optional<DefaultsValue> PosixUserDefaults::value(const std::string& key) const {
  auto bytes = files_.read(path_);
  if (!bytes) return std::nullopt;
  if (*bytes != readBytes_) {
    readValues_ = valuesOf(*bytes);
    readBytes_ = std::move(*bytes);
  }
  const auto stored = readValues_.find(key);
  return stored == readValues_.end() ? std::nullopt : std::optional(stored->second);
}

std::expected<void, PlatformError> PosixUserDefaults::set(const std::string& key, DefaultsValue value) {
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error());
  auto settings = settingsToChange(files_, path_);
  if (!settings) return std::unexpected(std::move(settings.error()));
  (*settings)[key] = std::visit(JsonOfValue(), value);
  return write(files_, path_, *settings);
}

std::expected<void, PlatformError> PosixUserDefaults::remove(const std::string& key) {
  const auto lock = FileLock::take(lockPath_);
  if (!lock) return std::unexpected(lock.error());
  const auto bytes = files_.read(path_);
  if (!bytes && isPosixError(bytes.error(), ENOENT)) return {};
  if (!bytes) return std::unexpected(bytes.error());
  auto settings = parsedSettings(*bytes);
  if (!settings || settings->erase(key) == 0) return {};
  return write(files_, path_, *settings);
}

}  // namespace ostrel
