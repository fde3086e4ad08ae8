#include "Tools/PreviewContainers.hpp"

#include <array>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "OstrelAgent/Containers/ContainerDetector.hpp"
#include "OstrelAgent/Containers/TrustBundle.hpp"
#include "Tools/PreviewDocument.hpp"

namespace ostrel {

namespace {

using Texts = std::vector<std::string>;

struct Block {
  std::optional<Texts> runtimes;
  std::optional<std::string> clearsBy;
};

/// The members of the document whose keys are fixed.
struct Situation {
  std::optional<Block> block;
  std::optional<Texts> installed;
  std::optional<std::string> caPublishedAt;
  std::optional<bool> dockerSharesLibrary;
  std::optional<std::string> bundlePEM;
  std::optional<Texts> notify;
  std::optional<std::string> notificationAuthorization;
  std::optional<std::string> selected;
  std::optional<std::string> snippet;
};

void read(const JsonReader& reader, Block& block) {
  reader.optional("runtimes", block.runtimes);
  reader.optional("clears_by", block.clearsBy);
}

void read(const JsonReader& reader, Situation& situation) {
  reader.optional("block", situation.block);
  reader.optional("installed", situation.installed);
  reader.optional("ca_published_at", situation.caPublishedAt);
  reader.optional("docker_shares_library", situation.dockerSharesLibrary);
  reader.optional("bundle_pem", situation.bundlePEM);
  reader.optional("notify", situation.notify);
  reader.optional("notification_authorization", situation.notificationAuthorization);
  reader.optional("selected", situation.selected);
  reader.optional("snippet", situation.snippet);
}

std::string_view nameOf(NotificationAuthorization authorization) {
  switch (authorization) {
    case NotificationAuthorization::authorized:
      return "authorized";
    case NotificationAuthorization::denied:
      return "denied";
    case NotificationAuthorization::notDetermined:
      return "notDetermined";
  }
  return {};
}

constexpr std::array authorizations = {NotificationAuthorization::authorized,
                                       NotificationAuthorization::denied,
                                       NotificationAuthorization::notDetermined};

std::set<std::string> setOf(const std::optional<Texts>& texts) {
  return texts ? std::set(texts->begin(), texts->end()) : std::set<std::string>();
}

/// Makes the page of a situation and keeps the first fault.
class PageReader {
 public:
  PageReader(const nlohmann::json& document, const Situation& situation)
      : document_(document), situation_(situation) {}

  std::expected<ContainersPage, JsonError> page() {
    ContainersPage page;
    page.reading = containerTrustReading(block(), {.running = running(), .installation = installation()});
    page.hasReading = true;
    page.notify = setOf(situation_.notify);
    page.selected = situation_.selected;
    page.notificationAuthorization =
        choice("notification_authorization", situation_.notificationAuthorization, authorizations);
    page.snippet = choice("snippet", situation_.snippet, containerSnippets);
    if (fault_) return std::unexpected(*std::move(fault_));
    return page;
  }

 private:
  std::optional<ContainerBlock> block() {
    if (!situation_.block) return std::nullopt;
    return ContainerBlock{situation_.block->runtimes.value_or(Texts()),
                          time("block.clears_by", situation_.block->clearsBy)};
  }

  ContainerInstallation installation() {
    const auto& pem = situation_.bundlePEM;
    return {.installed = setOf(situation_.installed),
            .caPublishedAt = time("ca_published_at", situation_.caPublishedAt),
            .dockerSharesLibrary = situation_.dockerSharesLibrary,
            .bundlePEM = pem ? trustbundle::usableText(*pem) : std::nullopt};
  }

  /// Its keys are names of runtimes, so it is no member of `Situation`.
  RunningRuntimes running() {
    RunningRuntimes running;
    const auto member = document_.find("running");
    if (member == document_.end() || member->is_null()) return running;
    if (!member->is_object()) {
      fail({"running", "is not an object"});
      return running;
    }
    for (const auto& [name, launch] : member->items()) {
      const auto* text = launch.get_ptr<const std::string*>();
      auto& date = running[name];
      if (!launch.is_null()) date = time("running." + name, text == nullptr ? std::string() : *text);
    }
    return running;
  }

  std::optional<Date> time(std::string path, const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    const auto date = readPreviewTime(std::move(path), *text);
    if (date) return *date;
    fail(date.error());
    return std::nullopt;
  }

  /// The value of that name; the first one when there is no name.
  template <class Value, std::size_t count>
  Value choice(std::string path, const std::optional<std::string>& name,
               const std::array<Value, count>& values) {
    std::string names;
    for (const auto value : values) {
      if (!name || *name == nameOf(value)) return value;
      names.append(names.empty() ? "" : ", ").append(nameOf(value));
    }
    fail({std::move(path), "is not one of " + names});
    return values.front();
  }

  void fail(JsonError fault) {
    if (!fault_) fault_ = std::move(fault);
  }

  const nlohmann::json& document_;
  const Situation& situation_;
  std::optional<JsonError> fault_;
};

}  // namespace

std::expected<ContainersPage, JsonError> readContainersPage(std::string_view bytes) {
  const auto document = JsonObject::parse(bytes);
  if (!document) return std::unexpected(document.error());
  const auto situation = document->as<Situation>();
  if (!situation) return std::unexpected(situation.error());
  const auto json = nlohmann::json::parse(bytes);
  return PageReader(json, *situation).page();
}

}  // namespace ostrel
