#pragma once

#include <memory>
#include <utility>

#include "Platform/BackgroundQueue.hpp"
#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Runs the work in the background and hands its result to `next`, with the owner, on the main thread, as far
/// as the owner still lives then.
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
