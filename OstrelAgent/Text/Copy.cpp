#include "OstrelAgent/Text/Copy.hpp"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "OstrelAgent/Text/DetailCodes.gen.hpp"

namespace ostrel {

namespace {

constexpr Message allMessages[] = {
#define COPY_MESSAGE(member, key, english) {key, english},
#define COPY_ONBOARDING(member, key, english) {key, english},
#include "OstrelAgent/Text/CopyMessages.def"
#undef COPY_MESSAGE
#undef COPY_ONBOARDING
};

/// The only global state of the program: the table that `install` sets at start.
Copy::Table& installedTable() {
  static Copy::Table table;
  return table;
}

const DetailCodeRow* findDetailCode(std::string_view code) {
  const auto* row = std::ranges::find(detailCodeRows, code, &DetailCodeRow::code);
  return row == detailCodeRows.end() ? nullptr : row;
}

std::string keyOf(std::string_view family, std::string_view code) {
  std::string key(family);
  key += code;
  return key;
}

std::string_view parameter(const std::vector<std::string>& params, std::size_t index) {
  return index < params.size() ? std::string_view(params[index]) : std::string_view();
}

/// Codes whose text is the daemon's own sentence, besides the CREDENTIAL_ codes.
constexpr std::array<std::string_view, 13> relayedCodes = {
    "TRUST_KNOB_UNCOVERED",         "SYSEXT_REACTIVATE_PENDING",     "APP_REJECTED_LEAF",
    "CONTAINER_REJECTED_LEAF",      "APP_STARTED_WITHOUT_TRUST_ENV", "APP_SHELL_SKIPPED_TRUST_SEED",
    "TRUST_ENV_SHELL_UNRESPONSIVE", "TRUST_VERIFIED_BY_TRAFFIC",     "TRUST_TRUSTED_WITHOUT_KNOB",
    "TRUST_SEEDED_FOR_SHELL",       "TRUST_KNOB_OVERRIDE_SUSPECTED", "TRUST_SEED_MISSING",
    "TRUST_RC_FILE_UNSCANNED"};

/// Codes whose translation takes the first two parameters as separate arguments.
constexpr std::array<std::string_view, 3> positionalPairCodes = {
    "TRUST_VERIFIED_BY_TRAFFIC", "TRUST_TRUSTED_WITHOUT_KNOB", "TRUST_KNOB_OVERRIDE_SUSPECTED"};

bool contains(const auto& codes, std::string_view code) {
  return std::ranges::find(codes, code) != codes.end();
}

/// The filled-in translation of a relayed code under the key, or the daemon's unchanged sentence.
std::string relayed(const std::string& key, std::string_view wireDetail,
                    std::initializer_list<FormatArgument> arguments) {
  const auto text = Copy::text(key, wireDetail);
  return text == wireDetail ? std::string(wireDetail) : formatText(text, arguments);
}

std::string joinedByComma(const std::vector<std::string>& params) {
  std::string joined;
  for (const auto& param : params) {
    if (&param != &params.front()) joined += ", ";
    joined += param;
  }
  return joined;
}

std::string startedWithoutTrustDetail(const std::string& key, std::string_view wireDetail,
                                      const std::vector<std::string>& params) {
  const auto program = parameter(params, 0);
  const auto terminal = parameter(params, 1);
  const auto kind = parameter(params, 2);
  if (kind == "app") return relayed(key + ".app", wireDetail, {program});
  if (kind == "service") return relayed(key + ".service", wireDetail, {program});
  if (!terminal.empty()) return relayed(key, wireDetail, {program, terminal});
  return relayed(key + ".noTerminal", wireDetail, {program});
}

std::string skippedSeedDetail(const std::string& key, std::string_view wireDetail,
                              const std::vector<std::string>& params) {
  const auto terminal = parameter(params, 1);
  if (terminal.empty()) return relayed(key + ".noTerminal", wireDetail, {parameter(params, 0)});
  return relayed(key, wireDetail, {parameter(params, 0), terminal});
}

std::string relayedDetail(std::string_view code, std::string_view wireDetail,
                          const std::vector<std::string>& params) {
  const auto key = keyOf("detail.", code);
  if (code == "APP_STARTED_WITHOUT_TRUST_ENV" && !params.empty()) {
    return startedWithoutTrustDetail(key, wireDetail, params);
  }
  if (code == "APP_SHELL_SKIPPED_TRUST_SEED" && !params.empty()) {
    return skippedSeedDetail(key, wireDetail, params);
  }
  if (contains(positionalPairCodes, code) && params.size() >= 2) {
    return relayed(key, wireDetail, {params[0], params[1]});
  }
  const auto joined = joinedByComma(params);
  return relayed(key, wireDetail, {joined});
}

}  // namespace

std::string_view Message::text() const { return Copy::text(key, english); }

Copy::Translation Copy::translation(const StringsEntries& entries) {
  const auto defaults = english();
  const std::unordered_map<std::string_view, std::string_view> defaultOf(defaults.begin(), defaults.end());
  Translation result;
  for (const auto& [key, text] : entries) {
    const auto known = defaultOf.find(key);
    const bool matches =
        known == defaultOf.end() || text.empty() || formatSpecifiers(text) == formatSpecifiers(known->second);
    if (matches) {
      result.table.insert_or_assign(key, text);
    } else {
      result.ignoredKeys.push_back(key);
    }
  }
  return result;
}

void Copy::install(Table table) { installedTable() = std::move(table); }

std::vector<std::pair<std::string, std::string_view>> Copy::english() {
  std::vector<std::pair<std::string, std::string_view>> all;
  for (const auto& message : allMessages) all.emplace_back(message.key, message.english);
  for (const auto& row : detailCodeRows) {
    if (!row.detail.empty()) all.emplace_back(keyOf("detail.", row.code), row.detail);
  }
  for (const auto& row : detailCodeRows) {
    if (!row.remedy.empty()) all.emplace_back(keyOf("remedy.", row.code), row.remedy);
  }
  return all;
}

std::string_view Copy::text(std::string_view key, std::string_view fallback) {
  const auto& table = installedTable();
  if (table.empty()) return fallback;
  const auto found = table.find(key);
  return found == table.end() || found->second == key ? fallback : std::string_view(found->second);
}

std::string Copy::componentDetail(std::string_view code, std::string_view wireDetail,
                                  const std::vector<std::string>& params) {
  if (code.empty()) return std::string(wireDetail);
  const auto* row = findDetailCode(code);
  if (row != nullptr && !row->detail.empty()) return std::string(text(keyOf("detail.", code), row->detail));
  if (!relaysWireDetail(code)) return detailUnknown.with(code);
  return relayedDetail(code, wireDetail, params);
}

std::optional<std::string> Copy::remedy(std::string_view code, const std::vector<std::string>& params) {
  if (code == "APP_STARTED_WITHOUT_TRUST_ENV") {
    const auto kind = parameter(params, 2);
    if (kind == "app") return std::string(remedyAppStartedWithoutTrustEnvApp.text());
    if (kind == "service") return std::string(remedyAppStartedWithoutTrustEnvService.text());
  }
  const auto* row = findDetailCode(code);
  if (row == nullptr || row->remedy.empty()) return std::nullopt;
  return std::string(text(keyOf("remedy.", code), row->remedy));
}

bool Copy::relaysWireDetail(std::string_view code) {
  if (code.starts_with("CREDENTIAL_")) return code != "CREDENTIAL_UNOBSERVABLE";
  return contains(relayedCodes, code);
}

std::string Copy::listJoined(const std::vector<std::string>& items) {
  std::string joined;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) joined += i + 1 < items.size() ? listJoinerComma.text() : listJoinerAnd.text();
    joined += items[i];
  }
  return joined;
}

std::string Copy::offNote(const std::vector<std::string>& names, std::int64_t directFlows) {
  auto note = (names.size() == 1 ? guardOffNoteOne : guardOffNoteMany).with(listJoined(names));
  if (directFlows > 0) note += " " + guardOffNoteDirectFlows.with(directFlows);
  return note;
}

std::string Copy::consequenceCredential(std::string_view detail) {
  const auto tail = guardConsequenceCredentialTail.text();
  if (!detail.empty()) return guardConsequenceCredentialWithDetail.with(detail, tail);
  return guardConsequenceCredentialJoin.with(guardConsequenceCredentialFallback.text(), tail);
}

std::string Copy::rollupNotCovered(std::size_t count, std::size_t total) {
  return guardRollupNotCovered.with(count, total);
}

std::string Copy::rollupEnforced(std::size_t count, std::size_t total) {
  return guardRollupEnforced.with(count, total);
}

std::string Copy::runtimeTrustCheckFile(std::string_view path) {
  return runtimeTrustCheckFileFormat.with(lastPathComponent(path));
}

std::string Copy::runtimeTrustReadingFile(std::string_view path) {
  return runtimeTrustReadingFileFormat.with(lastPathComponent(path));
}

std::optional<std::string> Copy::runtimeTrustStaleLauncher(const std::vector<std::string>& params) {
  const auto program = parameter(params, 0);
  if (program.empty()) return std::nullopt;
  const auto kind = parameter(params, 2);
  if (kind == "app") return runtimeTrustOldApp.with(program);
  if (kind == "service") return runtimeTrustOldService.with(program);
  const auto terminal = parameter(params, 1);
  return terminal.empty() ? runtimeTrustOldShell.with(program)
                          : runtimeTrustOldWindow.with(program, terminal);
}

std::optional<std::string> Copy::runtimeTrustShellSkippedSeed(const std::vector<std::string>& params) {
  const auto program = parameter(params, 0);
  if (program.empty()) return std::nullopt;
  return runtimeTrustShellSkippedSeedFormat.with(program);
}

std::string Copy::healthOKWithNotes(std::size_t count) {
  return count == 1 ? std::string(healthOkWithNote.text()) : healthOkWithNotes.with(count);
}

std::string_view lastPathComponent(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

}  // namespace ostrel
