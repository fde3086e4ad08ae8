#include "OstrelAgent/Containers/ContainersPageController.hpp"

#include <utility>

namespace ostrel {

ContainersPageController::ContainersPageController(Services services, Collaborators collaborators)
    : services_(services), collaborators_(std::move(collaborators)) {}

void ContainersPageController::start(std::function<void(std::vector<std::string>)> runningChanged) {
  runningChanged_ = std::move(runningChanged);
  const auto weakly = [weak = weak_from_this()](auto action) {
    return [weak, action](const auto&... arguments) {
      using Result = decltype(action(*weak.lock(), arguments...));
      const auto self = weak.lock();
      return self ? action(*self, arguments...) : Result();
    };
  };
  collaborators_.reader->start(weakly([](auto& self, const auto& findings) { self.apply(findings); }));
  services_.screen.onEvents({
      .opened = weakly([](auto& self) { self.open(); }),
      .selected = weakly([](auto& self, const std::string& name) { self.select(name); }),
      .snippetChosen = weakly([](auto& self, ContainerSnippet snippet) { self.choose(snippet); }),
      .copyPressed = weakly([](auto& self, ContainersCopy what) { return self.copy(what); }),
      .notifySwitched =
          weakly([](auto& self, const std::string& name, bool isOn) { return self.setNotify(name, isOn); }),
  });
}

void ContainersPageController::refresh() {
  collaborators_.reader->request(isOpen_ ? ContainerReader::Scope::all : ContainerReader::Scope::running);
  refreshPage();
}

std::function<void()> ContainersPageController::beginRefresh() {
  refreshPage();
  return collaborators_.reader->begin(isOpen_ ? ContainerReader::Scope::all
                                              : ContainerReader::Scope::running);
}

void ContainersPageController::refreshPage() {
  if (!isOpen_) return;
  readAuthorization();
  // While a reading hangs, a page without one says that it is checking.
  draw();
}

void ContainersPageController::publish(std::optional<ContainerBlock> block) {
  if (block == block_) return;
  block_ = std::move(block);
  page_.reading = containerTrustReading(block_, findings_);
  draw();
}

void ContainersPageController::open() {
  isOpen_ = true;
  collaborators_.reader->request(ContainerReader::Scope::allAnew);
  readAuthorization();
}

void ContainersPageController::select(const std::string& name) {
  if (page_.selected != name) page_.copied.reset();
  page_.selected = name;
  draw();
}

void ContainersPageController::choose(ContainerSnippet snippet) {
  if (page_.snippet != snippet) page_.copied.reset();
  page_.snippet = snippet;
  draw();
}

bool ContainersPageController::copy(ContainersCopy copy) {
  const auto text = page_.textToCopy(copy);
  if (!text || !services_.pasteboard.setText(*text)) return false;
  page_.copied = copy;
  draw();
  return true;
}

bool ContainersPageController::setNotify(const std::string& runtime, bool isOn) {
  const auto stored = collaborators_.preferences->setNotify(runtime, isOn);
  if (!stored) {
    services_.log.line("ostrel: could not store the notification preference: " + stored.error().description);
  }
  draw();
  return stored.has_value();
}

void ContainersPageController::apply(const ContainerFindings& findings) {
  std::vector<std::string> names;
  for (const auto& [name, launchDate] : findings.running) names.push_back(name);
  if (names != runningNames_) {
    runningNames_ = names;
    runningChanged_(std::move(names));
  }
  if (!findings.installation) return;
  findings_ = findings;
  page_.reading = containerTrustReading(block_, findings_);
  page_.hasReading = true;
  draw();
}

void ContainersPageController::readAuthorization() {
  services_.notifications.readAuthorization([weak = weak_from_this()](NotificationAuthorization answer) {
    const auto self = weak.lock();
    if (!self || self->page_.notificationAuthorization == answer) return;
    self->page_.notificationAuthorization = answer;
    self->draw();
  });
}

void ContainersPageController::draw() {
  if (!isOpen_) return;
  page_.notify = collaborators_.preferences->notify();
  services_.screen.show(page_.content());
}

}  // namespace ostrel
