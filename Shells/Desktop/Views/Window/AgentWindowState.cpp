#include "Shells/Desktop/Views/Window/AgentWindowState.hpp"

#include <algorithm>

#include "Shells/Desktop/Views/Common/Change.hpp"

namespace ostrel {

namespace {

using Content = AgentWindowContent;
using Entries = std::vector<ValueList::Entry>;

SidebarItemValue valueOf(const Content::SidebarItem& item) {
  SidebarItemValue value;
  value.page = static_cast<int>(item.page);
  value.title = textOf(item.title);
  value.hasMark = item.state.has_value();
  value.accessibleName = value.title;
  if (!item.state) return value;
  value.kind = statekind::kindOf(item.state->kind);
  if (!item.state->text.empty()) value.accessibleName += QStringLiteral(", ") + textOf(item.state->text);
  return value;
}

Entries sidebarItems(const std::vector<Content::SidebarSection>& sections) {
  Entries entries;
  for (const auto& section : sections) {
    for (const auto& item : section.items) {
      auto value = valueOf(item);
      if (&item == &section.items.front()) value.caption = textOf(section.caption);
      entries.push_back({QString::number(value.page), QVariant::fromValue(value)});
    }
  }
  return entries;
}

std::vector<AgentPage> pagesOf(const Content::Sidebar& sidebar) {
  std::vector<AgentPage> pages;
  for (const auto& section : sidebar.sections) {
    for (const auto& item : section.items) pages.push_back(item.page);
  }
  return pages;
}

/// The names of the runtimes from top to bottom.
std::vector<std::string> namesOf(const ContainersPageContent& page) {
  std::vector<std::string> names;
  for (const auto& section : page.sections) {
    for (const auto& row : section.rows) names.push_back(row.name);
  }
  return names;
}

/// The element that many places after the given one; null beyond the ends.
template <class Element>
const Element* neighbourOf(const std::vector<Element>& elements, const Element& from, int by) {
  const auto found = std::ranges::find(elements, from);
  const auto place = found == elements.end() ? 0 : found - elements.begin() + by;
  if (place < 0 || place >= std::ssize(elements)) return nullptr;
  return &elements[static_cast<std::size_t>(place)];
}

}  // namespace

bool AgentWindowState::show(const Content& content) {
  if (content == content_) return false;
  content_ = content;
  change(*this, isRightToLeft_, content.direction == TextDirection::rightToLeft,
         &AgentWindowState::isRightToLeftChanged);
  change(*this, header_, ostrel::valueOf(content.sidebar.header), &AgentWindowState::headerChanged);
  change(*this, enrolment_, textOf(content.sidebar.enrolment), &AgentWindowState::enrolmentChanged);
  change(*this, title_, textOf(content.title), &AgentWindowState::titleChanged);
  change(*this, status_, ostrel::valueOf(content.statusError), &AgentWindowState::statusChanged);
  sidebar_.show(sidebarItems(content.sidebar.sections));
  lines_.show(pageLines(content, isOpened_));
  const auto* containers = std::get_if<ContainersPageContent>(&content.body);
  // The hidden page stays as it was last seen.
  if (containers != nullptr) showContainers(*containers);
  change(*this, isContainersPage_, containers != nullptr, &AgentWindowState::isContainersPageChanged);
  change(*this, page_, static_cast<int>(content.page), &AgentWindowState::pageChanged);
  return true;
}

void AgentWindowState::showContainers(const ContainersPageContent& shown) {
  change(*this, checking_, textOf(shown.checking), &AgentWindowState::checkingChanged);
  change(*this, noSelection_, textOf(shown.noSelection), &AgentWindowState::noSelectionChanged);
  change(*this, detail_, detailOf(shown), &AgentWindowState::detailChanged);
  change(*this, inside_, ostrel::valueOf(shown.inside), &AgentWindowState::insideChanged);
  runtimes_.show(::ostrel::runtimes(shown.sections));
}

void AgentWindowState::setSize(QSizeF size) { change(*this, size_, size, &AgentWindowState::sizeChanged); }

void AgentWindowState::movePage(int by) {
  const auto pages = pagesOf(content_.sidebar);
  if (const auto* page = neighbourOf(pages, content_.page, by)) emit pageChosen(*page);
}

void AgentWindowState::fold(const PageLineValue& card) {
  isOpened_[card.id] = !card.isOpen;
  lines_.show(pageLines(content_, isOpened_));
}

void AgentWindowState::pressLine(const PageLineValue& line) {
  if (line.pageAction) return emit pageActionPressed(*line.pageAction);
  emit pressed(line.button.button);
}

void AgentWindowState::toggleRuntime(const QString& name) {
  emit runtimeSelected(detail_.name == name ? QString() : name);
}

void AgentWindowState::moveRuntime(int by) {
  const auto* page = std::get_if<ContainersPageContent>(&content_.body);
  if (page == nullptr) return;
  const auto names = namesOf(*page);
  if (const auto* name = neighbourOf(names, detail_.name.toStdString(), by))
    emit runtimeSelected(textOf(*name));
}

}  // namespace ostrel
