#include "Tools/PreviewContainersJson.hpp"

#include <nlohmann/json.hpp>

namespace ostrel {

namespace {

using Json = nlohmann::ordered_json;
using Content = ContainersPageContent;

std::string_view nameOf(ContainerChip chip) {
  switch (chip) {
    case ContainerChip::blocked:
      return "blocked";
    case ContainerChip::restart:
      return "restart";
    case ContainerChip::running:
      return "running";
    case ContainerChip::installed:
      return "installed";
  }
  return {};
}

std::string_view nameOf(TextDirection direction) {
  return direction == TextDirection::leftToRight ? "leftToRight" : "rightToLeft";
}

Json chipsJson(const std::vector<Content::Chip>& chips) {
  Json array = Json::array();
  for (const auto& chip : chips) array.push_back({{"kind", nameOf(chip.kind)}, {"text", chip.text}});
  return array;
}

Json sectionJson(const Content::Section& section) {
  Json rows = Json::array();
  for (const auto& row : section.rows) {
    rows.push_back({{"name", row.name}, {"chips", chipsJson(row.chips)}, {"selected", row.isSelected}});
  }
  return {{"caption", section.caption}, {"rows", std::move(rows)}};
}

/// Writes the parts that copy a text of their page.
class Writer {
 public:
  explicit Writer(const ContainersPage& page) : page_(page) {}

  Json page() const {
    const auto content = page_.content();
    Json sections = Json::array();
    for (const auto& section : content.sections) sections.push_back(sectionJson(section));
    return {{"title", content.title},
            {"direction", nameOf(content.direction)},
            {"checking", content.checking},
            {"sections", std::move(sections)},
            {"no_selection", content.noSelection},
            {"detail", content.detail ? detail(*content.detail) : Json()},
            {"authorization", content.authorization},
            {"authorization_button",
             content.authorizationButton ? Json(content.authorizationButton->title) : Json()},
            {"inside", inside(content.inside)}};
  }

 private:
  Json button(const Content::CopyButton& button) const {
    const auto text = page_.textToCopy(button.copies);
    return {{"title", button.title}, {"copies_text", text ? Json(*text) : Json()}};
  }

  Json command(const Content::Command& command) const {
    Json object = {{"shown", command.shown}};
    object.update(button(command.button));
    return object;
  }

  Json detail(const Content::Detail& detail) const {
    return {{"name", detail.name},
            {"chips", chipsJson(detail.chips)},
            {"state", detail.state},
            {"blocked", detail.blocked},
            {"setup", detail.setup ? command(*detail.setup) : Json()},
            {"guest", detail.guest ? command(*detail.guest) : Json()},
            {"reveal", detail.reveal.title},
            {"copy_path", button(detail.copyPath)},
            {"notify", {{"label", detail.notifyLabel}, {"on", detail.isNotifyOn}}}};
  }

  Json inside(const Content::Inside& inside) const {
    return {{"title", inside.title},
            {"lede", inside.lede},
            {"choices", inside.choices},
            {"chosen", nameOf(page_.snippet)},
            {"snippet", command(inside.snippet)},
            {"covers", inside.covers}};
  }

  const ContainersPage& page_;
};

}  // namespace

Json containersJson(const ContainersPage& page) { return Writer(page).page(); }

}  // namespace ostrel
