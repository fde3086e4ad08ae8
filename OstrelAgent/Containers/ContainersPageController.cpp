#include "OstrelAgent/Containers/ContainersPageController.hpp"

#include <utility>

namespace ostrel {

ContainersPageController::ContainersPageController(Services services, Collaborators collaborators)
    : services_(services), collaborators_(std::move(collaborators)) {}

void ContainersPageController::start(RunningListener runningChanged, std::function<void()> changed) {
  runningChanged_ = std::move(runningChanged);
  changed_ = std::move(changed);
  collaborators_.reader->start([weak = weak_from_this()](const ContainerFindings& findings) {
    if (const auto self = weak.lock()) self->apply(findings);
  });
}

void ContainersPageController::refresh() {
  if (isShown_) readAuthorization();
  collaborators_.reader->request(scope());
}

std::function<void()> ContainersPageController::beginRefresh() {
  if (isShown_) readAuthorization();
  return collaborators_.reader->begin(scope());
}

ContainerReader::Scope ContainersPageController::scope() const {
  return isShown_ ? ContainerReader::Scope::all : ContainerReader::Scope::running;
}

void ContainersPageController::publish(std::optional<ContainerBlock> block) {
  if (block == block_) return;
  block_ = std::move(block);
  page_.reading = containerTrustReading(block_, findings_);
  changed_();
}

ContainersPage ContainersPageController::page() const {
  auto page = page_;
  page.notify = collaborators_.preferences->notify();
  return page;
}

void ContainersPageController::setShown(bool isShown) {
  isShown_ = isShown;
  if (!isShown) return;
  setAuthorization(std::nullopt);
  collaborators_.reader->request(ContainerReader::Scope::allAnew);
  readAuthorization();
}

void ContainersPageController::readAuthorization() {
  services_.notifications.readAuthorization([weak = weak_from_this()](NotificationAuthorization answer) {
    if (const auto self = weak.lock()) self->setAuthorization(answer);
  });
}

void ContainersPageController::setAuthorization(std::optional<NotificationAuthorization> authorization) {
  if (std::exchange(page_.notificationAuthorization, authorization) != authorization) changed_();
}

void ContainersPageController::select(const std::string& name) {
  const auto selected = name.empty() ? std::nullopt : std::optional(name);
  if (std::exchange(page_.selected, selected) != selected) showCopied(std::nullopt);
}

void ContainersPageController::choose(ContainerSnippet snippet) {
  if (std::exchange(page_.snippet, snippet) != snippet) showCopied(std::nullopt);
}

bool ContainersPageController::copy(ContainersCopy what) {
  const auto text = page_.textToCopy(what);
  const bool isCopied = text && services_.pasteboard.setText(*text);
  if (text && !isCopied) services_.log.line("ostrel: could not copy to the pasteboard");
  showCopied(isCopied ? std::optional(what) : std::nullopt);
  return isCopied;
}

void ContainersPageController::showCopied(std::optional<ContainersCopy> copied) {
  page_.copied = copied;
  copiedToken_.reset();
  if (copied) {
    copiedToken_ = services_.mainQueue.after(copiedTime, [weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->showCopied(std::nullopt);
    });
  }
  changed_();
}

bool ContainersPageController::setNotify(const std::string& runtime, bool isOn) {
  return report(collaborators_.preferences->setNotify(runtime, isOn));
}

bool ContainersPageController::setAllNotify(bool isOn) {
  const auto wanted = isOn ? page().listedForNotifications() : std::set<std::string>();
  return (!isOn || !wanted.empty()) && report(collaborators_.preferences->setAll(wanted));
}

/// Shows a choice as it is stored.
bool ContainersPageController::report(const std::expected<void, PlatformError>& stored) {
  if (!stored) {
    services_.log.line("ostrel: could not store the notification preference: " + stored.error().description);
  }
  changed_();
  return stored.has_value();
}

void ContainersPageController::apply(const ContainerFindings& findings) {
  applyRunning(findings);
  if (!findings.installation) return;
  findings_ = findings;
  page_.reading = containerTrustReading(block_, findings_);
  page_.hasReading = true;
  changed_();
}

void ContainersPageController::applyRunning(const ContainerFindings& findings) {
  std::vector<std::string> names;
  for (const auto& [name, launchDate] : findings.running) names.push_back(name);
  if (names == runningNames_) return;
  runningNames_ = names;
  runningChanged_(std::move(names));
}

}  // namespace ostrel
