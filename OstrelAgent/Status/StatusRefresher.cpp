#include "OstrelAgent/Status/StatusRefresher.hpp"

#include <algorithm>
#include <utility>

namespace ostrel {

namespace {

/// One shared reading for all timed-out helpers, so that a repeated time-out compares as unchanged.
const std::shared_ptr<const HelperReading>& killedHelper() {
  static const auto reading =
      std::make_shared<const HelperReading>(HelperReading{.status = StatusRefresher::killedStatus});
  return reading;
}

}  // namespace

/// A running refresh and the parts that it still waits for.
struct StatusRefresher::Run {
  std::uint64_t number = 0;
  StatusInputs inputs = {};
  std::optional<std::uint64_t> proxyLoad = {};   ///< the load that is awaited
  std::optional<std::uint64_t> filterLoad = {};  ///< likewise
  bool hasThread = true;
  std::stop_source kill = {};
  ScheduledWork second = {};

  bool isComplete() const { return inputs.helper && !proxyLoad && !filterLoad; }
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

void StatusRefresher::beginIfDue() {
  if (const auto number = limiter_.begin()) begin(*number);
}

void StatusRefresher::begin(std::uint64_t number) {
  auto& run = runs_.emplace_back(Run{.number = number});
  run.proxyLoad = proxyLoads_.ask();
  if (loads_ == NetworkLoads::all) run.filterLoad = filterLoads_.ask();
  const auto leftBehind = services_.childProcesses.reapKilled() + stuckThreads_;
  if (leftBehind >= StatusRunLimiter::maxLeftBehind) run.inputs.helper = killedHelper();
  countSeconds(run);
  startInBackground(run);
}

/// Each timer starts the next, so that a late one counts no second twice.
void StatusRefresher::countSeconds(Run& run) {
  run.second = services_.mainQueue.after(std::chrono::seconds(1), [this, number = run.number] {
    const auto current = find(number);
    if (limiter_.countSecond(number)) return giveUp(current);
    countSeconds(*current);
    beginIfDue();
  });
}

/// The background part of a run: the loads first, since the helper blocks the thread.
struct StatusRefresher::BackgroundWork {
  std::weak_ptr<StatusRefresher> refresher;
  MainQueue& mainQueue;
  NetworkPreferences& networkPreferences;
  HelperRunner helper;
  bool isHelperWanted;
  std::shared_ptr<const HelperReading> previous;
  std::uint64_t number;
  std::optional<std::uint64_t> proxyLoad;
  std::optional<std::uint64_t> filterLoad;
  std::stop_token kill;

  bool isNothing() const { return !isHelperWanted && !proxyLoad && !filterLoad; }

  void operator()() const {
    if (proxyLoad) {
      networkPreferences.loadTransparentProxies(answer(*proxyLoad, &StatusRefresher::proxyLoads_,
                                                       &Run::proxyLoad, &StatusInputs::transparentProxies));
    }
    if (filterLoad) {
      networkPreferences.loadContentFilter(answer(*filterLoad, &StatusRefresher::filterLoads_,
                                                  &Run::filterLoad, &StatusInputs::contentFilter));
    }
    const auto reading = isHelperWanted ? readHelper(runStatus(helper, {.kill = kill}), previous) : nullptr;
    post(refresher, mainQueue,
         [number = number, reading](StatusRefresher& self) { self.finishThread(number, reading); });
  }

  /// A completion that passes the result to its run, if that is still running.
  template <class Loaded>
  std::function<void(Loaded)> answer(std::uint64_t load, LoadLimiter StatusRefresher::*limiter,
                                     std::optional<std::uint64_t> Run::*awaited,
                                     std::optional<Loaded> StatusInputs::*member) const {
    return [refresher = refresher, &queue = mainQueue, number = number, load, limiter, awaited,
            member](Loaded loaded) {
      post(refresher, queue, [=, loaded = std::move(loaded)](StatusRefresher& self) {
        (self.*limiter).answer(load);
        self.finishLoad(number, awaited, member, loaded);
      });
    };
  }

  template <class Work>
  static void post(const std::weak_ptr<StatusRefresher>& refresher, MainQueue& queue, Work work) {
    queue.post([refresher, work = std::move(work)] {
      if (const auto self = refresher.lock()) work(*self);
    });
  }
};

void StatusRefresher::startInBackground(const Run& run) {
  const BackgroundWork work{weak_from_this(),
                            services_.mainQueue,
                            services_.networkPreferences,
                            helper_,
                            run.inputs.helper == nullptr,
                            previous_,
                            run.number,
                            run.proxyLoad,
                            run.filterLoad,
                            run.kill.get_token()};
  if (work.isNothing()) return services_.mainQueue.post(work);
  services_.statusQueue.run(QualityOfService::utility, work);
}

void StatusRefresher::finishThread(std::uint64_t number,
                                   const std::shared_ptr<const HelperReading>& reading) {
  const auto run = find(number);
  if (run == runs_.end()) {
    --stuckThreads_;
    return;
  }
  run->hasThread = false;
  if (reading) run->inputs.helper = previous_ = reading;
  finishIfComplete(run);
}

template <class Loaded>
void StatusRefresher::finishLoad(std::uint64_t number, std::optional<std::uint64_t> Run::*load,
                                 std::optional<Loaded> StatusInputs::*member, const Loaded& loaded) {
  const auto run = find(number);
  if (run == runs_.end()) return;
  (*run).*load = std::nullopt;
  run->inputs.*member = loaded;
  finishIfComplete(run);
}

/// A load that has not completed stays unknown.
void StatusRefresher::giveUp(Runs::iterator run) {
  run->kill.request_stop();
  if (!run->inputs.helper) run->inputs.helper = killedHelper();
  finish(run);
}

void StatusRefresher::finishIfComplete(Runs::iterator run) {
  if (run->isComplete()) finish(run);
}

void StatusRefresher::finish(Runs::iterator run) {
  const RefreshResult result{run->number, std::move(run->inputs)};
  if (run->hasThread) ++stuckThreads_;
  runs_.erase(run);
  if (limiter_.finish(result.run)) published_(result);
  beginIfDue();
}

StatusRefresher::Runs::iterator StatusRefresher::find(std::uint64_t number) {
  return std::ranges::find(runs_, number, &Run::number);
}

}  // namespace ostrel
