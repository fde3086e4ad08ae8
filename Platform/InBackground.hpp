#pragma once

#include <memory>
#include <utility>

#include "Platform/BackgroundQueue.hpp"
#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Runs the work in the background and then, on the main thread, passes the owner and the result to `next` if
/// the owner still lives.
template <class Owner, class Work, class Next>
void inBackground(BackgroundQueue& backgroundQueue, QualityOfService quality, MainQueue& mainQueue,
                  std::weak_ptr<Owner> owner, Work work, Next next) {
  backgroundQueue.run(quality, [&mainQueue, owner = std::move(owner), work = std::move(work), next] {
    mainQueue.post([owner, next, result = work()] {
      if (const auto alive = owner.lock()) next(*alive, result);
    });
  });
}

}  // namespace ostrel
