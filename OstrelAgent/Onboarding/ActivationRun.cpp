#include "OstrelAgent/Onboarding/ActivationRun.hpp"

#include <utility>

#include "OstrelAgent/Text/Copy.hpp"
#include "OstrelAgent/Text/Utf8.hpp"
#include "Platform/InBackground.hpp"

namespace ostrel {

ActivationRun::ActivationRun(Services services, const std::string& executable, Events listeners)
    : events_(std::make_shared<Events>(std::move(listeners))) {
  const auto onMain = [&queue = services.mainQueue, weak = std::weak_ptr(events_)](auto work) {
    postTo(weak, queue, std::move(work));
  };
  const ChildOutput received = [onMain](std::string_view bytes) {
    const auto progress = isUtf8(bytes) ? activationOfProgress(bytes) : std::nullopt;
    if (progress) onMain([progress = *progress](const Events& events) { events.progressed(progress); });
  };
  const ChildCommand command{executable, {"activate"}, ChildStream::captured, ChildStream::captured};
  services.backgroundQueue.run(
      QualityOfService::userInitiated, [&children = services.childProcesses, command, received, onMain,
                                        ending = ChildStopTokens{terminate_.get_token(), {}}] {
        const auto ran = children.run(command, ending, received);
        const auto state = ran ? activationAfterExit(ran->status, ran->error)
                               : activationstate::Failed{
                                     Copy::Onboarding::activationCouldNotStart.with(ran.error().description)};
        onMain([state](const Events& events) { events.ended(state); });
      });
}

}  // namespace ostrel
