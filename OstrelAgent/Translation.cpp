#include "OstrelAgent/Translation.hpp"

#include <string>
#include <utility>

#include "OstrelAgent/Copy.hpp"

namespace ostrel {

void installTranslation(const Bundle& bundle, Log& log) {
  const auto bytes = bundle.localizedTable("Copy");
  if (!bytes) return log.line("ostrel: could not read the translated texts: " + bytes.error().description);
  if (!*bytes) return;
  const auto entries = parseStrings(**bytes);
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
