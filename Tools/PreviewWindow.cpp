#include "Tools/PreviewWindow.hpp"

#include <nlohmann/json.hpp>
#include <variant>

#include "OstrelAgent/Containers/ContainerDetector.hpp"
#include "Tools/PreviewContainersJson.hpp"
#include "Tools/PreviewValues.hpp"

namespace ostrel {

namespace {

using Json = PreviewJson;
using Content = AgentWindowContent;

}  // namespace

static Json json(const Content::Fact& fact) {
  return {{"label", fact.label},
          {"value", fact.value},
          {"case", nameOf(fact.kind)},
          {"addition", fact.addition},
          {"code", fact.isCode},
          {"button", jsonOrNull(fact.button, [](const auto& button) { return json(button); })}};
}

static Json json(const Content::Notifications::Switch& toggle) {
  return {{"label", toggle.label}, {"on", toggle.isOn}, {"enabled", toggle.isEnabled}};
}

static Json json(const Content::SidebarItem& item) {
  return {{"page", nameOf(item.page)},
          {"title", item.title},
          {"state", jsonOrNull(item.state, [](const auto& state) { return json(state); })}};
}

static Json json(const Content::SidebarSection& section) {
  return {{"caption", section.caption}, {"items", jsonList(section.items)}};
}

static Json json(const Content::Health::Component& component) {
  return {{"card", json(component.card)},
          {"facts", jsonList(component.facts)},
          {"starts_open", component.startsOpen}};
}

namespace {

/// Writes the body of a page.
struct BodyWriter {
  const ContainersPage& containers;

  Json operator()(std::monostate) const { return nullptr; }
  Json operator()(const Content::Ecosystems& page) const {
    const auto any = [](const auto& value) { return json(value); };
    return {{"rollup", jsonOrNull(page.rollup, any)},
            {"card", jsonOrNull(page.card, any)},
            {"rows", jsonList(page.rows)},
            {"off_note", page.offNote},
            {"no_ecosystems", page.noEcosystems},
            {"facts", jsonList(page.facts)}};
  }
  Json operator()(const ContainersPageContent& /*page*/) const { return containersJson(containers); }
  Json operator()(const Content::EgressLock& page) const {
    return {{"card", json(page.card)}, {"facts", jsonList(page.facts)}};
  }
  Json operator()(const Content::Identity& page) const {
    return {{"device", jsonList(page.device)},
            {"checkin", jsonList(page.checkin)},
            {"notice", page.notice},
            {"version", jsonList(page.version)},
            {"installing", page.installing}};
  }
  Json operator()(const Content::Health& page) const {
    return {{"facts", jsonList(page.facts)}, {"components", jsonList(page.components)}};
  }
  Json operator()(const Content::Notifications& page) const {
    return {{"authorization", page.authorization},
            {"authorization_button",
             jsonOrNull(page.authorizationButton, [](const auto& b) { return Json(b.title); })},
            {"master", json(page.master)},
            {"lede", page.lede},
            {"caption", page.caption},
            {"runtimes", jsonList(page.runtimes)}};
  }
  Json operator()(const Content::Help& page) const {
    return {{"lede", page.lede}, {"buttons", jsonList(page.buttons)}, {"notices", jsonList(page.notices)}};
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
  return {{"header", json(content.sidebar.header)},
          {"enrolment", content.sidebar.enrolment},
          {"sidebar", jsonList(content.sidebar.sections)},
          {"page", nameOf(content.page)},
          {"title", content.title},
          {"status_error", jsonOrNull(content.statusError, [](const auto& error) { return json(error); })},
          {"body", std::visit(BodyWriter{containers}, content.body)}};
}

}  // namespace ostrel
