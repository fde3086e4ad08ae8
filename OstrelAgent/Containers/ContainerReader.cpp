#include "OstrelAgent/Containers/ContainerReader.hpp"

#include <utility>

#include "Platform/InBackground.hpp"

namespace ostrel {

ContainerReader::ContainerReader(Services services, ContainerDetector::Services detectorServices)
    : services_(services), work_(std::make_shared<Work>(detectorServices)) {}

void ContainerReader::request(Scope scope) {
  if (auto reading = begin(scope)) {
    services_.backgroundQueue.run(QualityOfService::utility, std::move(reading));
  }
}

std::function<void()> ContainerReader::begin(Scope scope) {
  if (work_->wanted.fetch_or(wantedBy(scope)) != 0) return {};
  return [work = work_, &mainQueue = services_.mainQueue, weak = weak_from_this()] {
    // A scope that is wider than that of the reading under way is served by another one after it.
    for (auto current = work->wanted.load();;) {
      if (auto findings = read(*work, current)) {
        postTo(weak, mainQueue,
               [findings = *std::move(findings)](ContainerReader& self) { self.published_(findings); });
      }
      if (work->wanted.compare_exchange_strong(current, 0)) return;
    }
  };
}

ContainerReader::Wanted ContainerReader::wantedBy(Scope scope) {
  if (scope == Scope::running) return running;
  return running | installation | (scope == Scope::allAnew ? publishing : 0);
}

/// The findings, when they are to be published.
std::optional<ContainerFindings> ContainerReader::read(Work& work, Wanted wanted) {
  ContainerFindings findings{work.detector.running(), std::nullopt};
  if ((wanted & installation) != 0) findings.installation = work.detector.installation();
  if ((wanted & publishing) == 0 && findings == work.latest) return std::nullopt;
  work.latest = findings;
  return findings;
}

}  // namespace ostrel
