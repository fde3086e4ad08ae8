#pragma once

#include <memory>
#include <utility>

#include "Platform/BackgroundQueue.hpp"
#include "Platform/MainQueue.hpp"

namespace ostrel {

/// Runs the work with the owner on the main thread, if the owner still lives then. Any thread.
template <class Owner, class Work>
void postTo(const std::weak_ptr<Owner>& owner, MainQueue& mainQueue, Work work) {
  mainQueue.post([owner, work = std::move(work)] {
    if (const auto alive = owner.lock()) work(*alive);
  });
}

/// Runs the work in the background and passes its result to `next`, with the owner, on the main thread, if
/// the owner still lives then.
template <class Owner, class Work, class Next>
void inBackground(BackgroundQueue& backgroundQueue, QualityOfService quality, MainQueue& mainQueue,
                  std::weak_ptr<Owner> owner, Work work, Next next) {
  backgroundQueue.run(quality, [&mainQueue, owner = std::move(owner), work = std::move(work), next] {
    postTo(owner, mainQueue, [next, result = work()](Owner& alive) { next(alive, result); });
  });
}

}  // namespace ostrel
