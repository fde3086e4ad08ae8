#include "OstrelAgent/Text/Translation.hpp"

#include <string>
#include <utility>

#include "OstrelAgent/Text/Copy.hpp"

namespace ostrel {

void installTranslation(const Bundle& bundle, Log& log) {
  const auto table = bundle.localizedTable("Copy");
  if (!table) return log.line("ostrel: could not read the translated texts: " + table.error().description);
  const auto& bytes = *table;
  if (!bytes) return;
  const auto entries = parseStrings(*bytes);
  if (!entries) {
    return log.line("ostrel: the translated texts are damaged in line " +
                    std::to_string(entries.error().line) + ": " + entries.error().reason);
  }
  auto translation = Copy::translation(*entries);
  for (const auto& key : translation.ignoredKeys) {
    log.line("ostrel: the translation of " + key + " does not take the message's parameters");
  }
  Copy::install(std::move(translation.table));
}

}  // namespace ostrel
