#pragma once

#include <concepts>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OstrelAgent/Text/StringsTable.hpp"
#include "OstrelAgent/Text/TextFormat.hpp"

namespace ostrel {

/// A text for the user: its key in the Copy table and its English default.
struct Message {
  std::string_view key;
  std::string_view english;

  /// The text in the user's language. The view is valid as long as the installed table.
  std::string_view text() const;

  /// The text with its parameters filled in: strings for "%@", integers for "%d".
  template <class... Arguments>
  std::string with(const Arguments&... arguments) const {
    return formatText(text(), {argument(arguments)...});
  }

 private:
  static FormatArgument argument(std::string_view text) { return text; }
  static FormatArgument argument(std::integral auto number) { return static_cast<std::int64_t>(number); }
};

/// The message catalogue: every text that the program shows.
class Copy {
 public:
  using Table = std::map<std::string, std::string, std::less<>>;

#define COPY_MESSAGE(member, key, english) static constexpr Message member{key, english};
#define COPY_ONBOARDING(member, key, english)
#include "OstrelAgent/Text/CopyMessages.def"
#undef COPY_MESSAGE
#undef COPY_ONBOARDING

  struct Onboarding {
#define COPY_MESSAGE(member, key, english)
#define COPY_ONBOARDING(member, key, english) static constexpr Message member{key, english};
#include "OstrelAgent/Text/CopyMessages.def"
#undef COPY_MESSAGE
#undef COPY_ONBOARDING
  };

  /// A translation as a table, and the keys left out because their specifiers differ from the default's.
  struct Translation {
    Table table;
    std::vector<std::string> ignoredKeys;
  };
  static Translation translation(const StringsEntries& entries);

  /// Installs the translated texts. Call at most once, before the first use of a text.
  static void install(Table table);

  /// All keys of the catalogue with their English texts: messages, detail texts, remedies.
  static std::vector<std::pair<std::string, std::string_view>> english();

  /// The installed table's text for the key, or the fallback. The view is valid as long as table and
  /// fallback.
  static std::string_view text(std::string_view key, std::string_view fallback);

  /// The detail line of a component from its code, the daemon's own sentence and its parameters.
  static std::string componentDetail(std::string_view code, std::string_view wireDetail,
                                     const std::vector<std::string>& params);

  /// What the user can do about a code, or nullopt.
  static std::optional<std::string> remedy(std::string_view code, const std::vector<std::string>& params);

  /// True for codes whose text is the daemon's own sentence.
  static bool relaysWireDetail(std::string_view code);

  /// "a, b and c".
  static std::string listJoined(const std::vector<std::string>& items);

  /// The note about ecosystems that policy has switched off.
  static std::string offNote(const std::vector<std::string>& names, std::int64_t directFlows);

  /// The consequence of a broken credential.
  static std::string consequenceCredential(std::string_view detail);

  static std::string rollupNotCovered(std::size_t count, std::size_t total);
  static std::string rollupEnforced(std::size_t count, std::size_t total);

  /// Texts that name a file by the last component of its path.
  static std::string runtimeTrustCheckFile(std::string_view path);
  static std::string runtimeTrustReadingFile(std::string_view path);

  /// Short texts for programs that were started without the trust settings; nullopt without a program's name.
  static std::optional<std::string> runtimeTrustStaleLauncher(const std::vector<std::string>& params);
  static std::optional<std::string> runtimeTrustShellSkippedSeed(const std::vector<std::string>& params);

  /// "OK, 1 note", "OK, 3 notes".
  static std::string healthOKWithNotes(std::size_t count);
};

/// The last component of a slash-separated path.
std::string_view lastPathComponent(std::string_view path);

}  // namespace ostrel
