#include "Tools/PreviewWindow.hpp"

#include <nlohmann/json.hpp>
#include <variant>

#include "OstrelAgent/Containers/ContainerDetector.hpp"
#include "Tools/PreviewContainersJson.hpp"
#include "Tools/PreviewValues.hpp"

namespace ostrel {

namespace {

using namespace previewvalues;
using Content = AgentWindowContent;

Json json(const Content::Fact& fact) {
  return {{"label", fact.label},
          {"value", fact.value},
          {"case", nameOf(fact.kind)},
          {"code", fact.isCode},
          {"button", orNull(fact.button, [](const auto& button) { return previewvalues::json(button); })}};
}

Json json(const Content::Notifications::Switch& toggle) {
  return {{"label", toggle.label}, {"on", toggle.isOn}, {"enabled", toggle.isEnabled}};
}

Json json(const Content::SidebarItem& item) {
  return {{"page", nameOf(item.page)},
          {"title", item.title},
          {"mark", orNull(item.mark, [](const auto& mark) { return Json(nameOf(mark)); })}};
}

/// A list of values that only the window has.
template <class Items>
Json listOf(const Items& items) {
  Json array = Json::array();
  for (const auto& item : items) array.push_back(json(item));
  return array;
}

Json json(const Content::SidebarSection& section) {
  return {{"caption", section.caption}, {"items", listOf(section.items)}};
}

Json json(const Content::Health::Component& component) {
  return {{"card", previewvalues::json(component.card)},
          {"facts", listOf(component.facts)},
          {"starts_open", component.startsOpen}};
}

/// Writes the body of a page.
struct BodyWriter {
  const ContainersPage& containers;

  Json operator()(std::monostate) const { return nullptr; }
  Json operator()(const Content::Ecosystems& page) const {
    const auto any = [](const auto& value) { return previewvalues::json(value); };
    return {{"rollup", orNull(page.rollup, any)},  {"card", orNull(page.card, any)},
            {"rows", list(page.rows)},             {"off_note", page.offNote},
            {"no_ecosystems", page.noEcosystems}, {"facts", listOf(page.facts)}};
  }
  Json operator()(const ContainersPageContent& /*page*/) const { return containersJson(containers); }
  Json operator()(const Content::EgressLock& page) const {
    return {{"card", previewvalues::json(page.card)}, {"facts", listOf(page.facts)}};
  }
  Json operator()(const Content::Identity& page) const {
    return {{"device", listOf(page.device)},
            {"checkin", listOf(page.checkin)},
            {"notice", page.notice},
            {"version", listOf(page.version)}};
  }
  Json operator()(const Content::Health& page) const {
    return {{"facts", listOf(page.facts)}, {"components", listOf(page.components)}};
  }
  Json operator()(const Content::Notifications& page) const {
    return {{"authorization", page.authorization},
            {"master", json(page.master)},
            {"lede", page.lede},
            {"caption", page.caption},
            {"runtimes", listOf(page.runtimes)}};
  }
  Json operator()(const Content::Help& page) const {
    return {{"lede", page.lede}, {"buttons", list(page.buttons)}, {"notices", page.notices}};
  }
};

}  // namespace

ContainersPage previewContainersPage(const StatusPanelModel& model) {
  ContainersPage page;
  ContainerFindings findings;
  for (const auto& name : model.runningContainerRuntimes) findings.running[name];
  page.reading = containerTrustReading(ContainerBlock::read(model.snap.runtimeTrust), findings);
  page.hasReading = true;
  page.notificationAuthorization = NotificationAuthorization::authorized;
  return page;
}

Json agentWindowJson(const Content& content, const ContainersPage& containers) {
  return {{"header", previewvalues::json(content.sidebar.header)},
          {"enrolment", content.sidebar.enrolment},
          {"sidebar", listOf(content.sidebar.sections)},
          {"page", nameOf(content.page)},
          {"title", content.title},
          {"status_error",
           orNull(content.statusError, [](const auto& error) { return previewvalues::json(error); })},
          {"body", std::visit(BodyWriter{containers}, content.body)}};
}

}  // namespace ostrel
