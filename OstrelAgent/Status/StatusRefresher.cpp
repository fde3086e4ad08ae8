#include "OstrelAgent/Status/StatusRefresher.hpp"

#include <algorithm>
#include <utility>

#include "Platform/InBackground.hpp"

namespace ostrel {

namespace {

/// One reading for all helpers that were given up, so that a repeated failure is an unchanged one.
const std::shared_ptr<const HelperReading>& killedHelper() {
  static const auto reading =
      std::make_shared<const HelperReading>(HelperReading{.status = StatusRefresher::killedStatus});
  return reading;
}

}  // namespace

/// A run, and what it still waits for. One that is over stays while work of it holds a thread.
struct StatusRefresher::Run {
  std::uint64_t number = 0;
  StatusInputs inputs = {};
  std::optional<std::uint64_t> proxyLoad =
      {};  ///< its number among the loads of its kind, until it is answered
  std::optional<std::uint64_t> filterLoad = {};  ///< likewise
  bool hasThread = false;
  bool isOver = false;
  bool isStuck = false;  ///< over, and it holds a thread a second later
  std::stop_source kill = {};
  ScheduledWork second = {};

  bool isComplete() const { return inputs.helper && !proxyLoad && !filterLoad; }
  bool isEnding() const { return isOver && !isStuck; }
};

StatusRefresher::StatusRefresher(Services services, HelperRunner helper, NetworkLoads loads)
    : services_(services),
      helper_(std::move(helper)),
      loads_(loads),
      proxyLoads_(services.mainQueue),
      filterLoads_(services.mainQueue) {}

StatusRefresher::~StatusRefresher() = default;

void StatusRefresher::start(std::function<void(const RefreshResult&)> published) {
  published_ = std::move(published);
  wakeObserver_ = services_.systemWake.observe([this] { request(); });
  request();
}

void StatusRefresher::request() {
  (void)services_.childProcesses.reapKilled();
  limiter_.request();
  beginIfDue();
}

/// A run that has just been given up ends within moments or is stuck, which decides whether a helper may be
/// started.
void StatusRefresher::beginIfDue() {
  if (std::ranges::any_of(runs_, &Run::isEnding)) return;
  if (const auto number = limiter_.begin()) begin(*number);
}

void StatusRefresher::begin(std::uint64_t number) {
  auto& run = runs_.emplace_back(Run{.number = number});
  const auto stuck = static_cast<std::size_t>(std::ranges::count_if(runs_, &Run::isStuck));
  if (services_.childProcesses.reapKilled() + stuck >= StatusRunLimiter::maxLeftBehind) {
    run.inputs.helper = killedHelper();
  }
  countSeconds(run);
  if (!run.inputs.helper) runHelper(run);
  load(run);
  if (run.isComplete())
    postTo(weak_from_this(), services_.mainQueue,
           [number](StatusRefresher& self) { self.finishIfComplete(number); });
}

/// The timers follow one another, so that a late one makes no second count twice.
void StatusRefresher::countSeconds(Run& run) {
  run.second = services_.mainQueue.after(std::chrono::seconds(1), [this, number = run.number] {
    const auto current = find(number);
    if (limiter_.countSecond(number)) return giveUp(current);
    countSeconds(*current);
    beginIfDue();
  });
}

void StatusRefresher::load(Run& run) {
  const auto answered = [weak = weak_from_this(), &queue = services_.mainQueue, number = run.number](
                            auto limiter, std::uint64_t load, auto awaited, auto member) {
    return [=, &queue](auto loaded) {
      postTo(weak, queue, [=, loaded = std::move(loaded)](StatusRefresher& self) {
        (self.*limiter).answer(load);
        self.finishLoad(number, awaited, member, loaded);
      });
    };
  };
  auto& preferences = services_.networkPreferences;
  run.proxyLoad = proxyLoads_.ask();
  if (loads_ == NetworkLoads::all) run.filterLoad = filterLoads_.ask();
  if (const auto load = run.proxyLoad) {
    preferences.loadTransparentProxies(
        answered(&StatusRefresher::proxyLoads_, *load, &Run::proxyLoad, &StatusInputs::transparentProxies));
  }
  if (const auto load = run.filterLoad) {
    preferences.loadContentFilter(
        answered(&StatusRefresher::filterLoads_, *load, &Run::filterLoad, &StatusInputs::contentFilter));
  }
}

void StatusRefresher::runHelper(Run& run) {
  run.hasThread = true;
  inBackground(
      services_.statusQueue, QualityOfService::utility, services_.mainQueue, weak_from_this(),
      [helper = helper_, kill = run.kill.get_token(), previous = previous_] {
        return readHelper(runStatus(helper, {.kill = kill}), previous);
      },
      [number = run.number](StatusRefresher& self, const auto& reading) {
        self.finishHelper(number, reading);
      });
}

void StatusRefresher::finishHelper(std::uint64_t number,
                                   const std::shared_ptr<const HelperReading>& reading) {
  const auto run = find(number);
  run->hasThread = false;
  if (run->isOver) {
    runs_.erase(run);
    return beginIfDue();
  }
  run->inputs.helper = previous_ = reading;
  finishIfComplete(number);
}

template <class Loaded>
void StatusRefresher::finishLoad(std::uint64_t number, std::optional<std::uint64_t> Run::*load,
                                 std::optional<Loaded> StatusInputs::*member, const Loaded& loaded) {
  const auto run = find(number);
  if (run == runs_.end() || run->isOver) return;
  (*run).*load = std::nullopt;
  run->inputs.*member = loaded;
  finishIfComplete(number);
}

/// A load that has not come stays unknown.
void StatusRefresher::giveUp(Runs::iterator run) {
  run->kill.request_stop();
  if (!run->inputs.helper) run->inputs.helper = killedHelper();
  finish(run);
}

void StatusRefresher::finishIfComplete(std::uint64_t number) {
  const auto run = find(number);
  if (run != runs_.end() && !run->isOver && run->isComplete()) finish(run);
}

void StatusRefresher::finish(Runs::iterator run) {
  const RefreshResult result{run->number, std::move(run->inputs)};
  if (!run->hasThread) {
    runs_.erase(run);
  } else {
    run->isOver = true;
    run->second = services_.mainQueue.after(std::chrono::seconds(1), [this, number = result.run] {
      find(number)->isStuck = true;
      beginIfDue();
    });
  }
  if (limiter_.finish(result.run)) published_(result);
  beginIfDue();
}

StatusRefresher::Runs::iterator StatusRefresher::find(std::uint64_t number) {
  return std::ranges::find(runs_, number, &Run::number);
}

}  // namespace ostrel
