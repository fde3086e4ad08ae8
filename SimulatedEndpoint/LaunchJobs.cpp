#include "SimulatedEndpoint/LaunchJobs.hpp"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <utility>
#include <vector>

#include "Platform/Posix/FileLock.hpp"
#include "SimulatedEndpoint/JsonFile.hpp"
#include "SimulatedEndpoint/LaunchedProcess.hpp"
#include "SimulatedEndpoint/PropertyList.hpp"

namespace ostrel::simulated {

namespace {

constexpr const char* jobsFile = "/Library/Application Support/simulated-endpoint/jobs.json";
// Not the lock of the other state: the end of a job may take seconds.
constexpr const char* jobsLock = "/Library/Application Support/simulated-endpoint/jobs.lock";
constexpr std::chrono::seconds lockTimeout(30);

bool hasGraphicalSession() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return true;
  }
  return false;
}

bool isTextList(const Json& list) {
  if (!list.is_array() || list.empty()) return false;
  for (const auto& each : list) {
    if (!each.is_string()) return false;
  }
  return true;
}

/// The job of a property list, or null when it is none that can be loaded.
Json jobOf(const Json& list) {
  if (!list.is_object() || !list.contains("Label") || !list["Label"].is_string()) return nullptr;
  if (!list.contains("ProgramArguments") || !isTextList(list["ProgramArguments"])) return nullptr;
  return {{"label", list["Label"]},
          {"program", list["ProgramArguments"]},
          {"run_at_load", list.contains("RunAtLoad") && list["RunAtLoad"] == true}};
}

}  // namespace

LaunchJobs::LaunchJobs(Files& files, const HostRoot& root)
    : files_(files), root_(root), path_(root.realPath(jobsFile)), lockPath_(root.realPath(jobsLock)) {}

int LaunchJobs::bootstrap(const std::string& domain, const std::string& propertyList) {
  if (domain != "gui/" + std::to_string(::getuid()) || !hasGraphicalSession()) return unsupportedDomain;
  const auto lock = FileLock::take(lockPath_, lockTimeout);
  if (!lock) return inputOutputError;
  const auto text = files_.read(root_.realPath(propertyList));
  const auto list = text ? parsePropertyList(*text) : Json();
  auto job = list ? jobOf(*list) : Json();
  if (job.is_null()) return inputOutputError;
  auto jobs = load();
  const auto service = domain + "/" + job["label"].get<std::string>();
  if (jobs.contains(service)) return inputOutputError;
  if (job["run_at_load"] == true && !start(job)) return inputOutputError;
  jobs[service] = job;
  if (store(jobs)) return done;
  LaunchedProcess::of(job).end();
  return inputOutputError;
}

int LaunchJobs::bootout(const std::string& service) {
  const auto lock = FileLock::take(lockPath_, lockTimeout);
  if (!lock) return inputOutputError;
  auto jobs = load();
  if (!jobs.contains(service)) return noSuchProcess;
  LaunchedProcess::of(jobs[service]).end();
  jobs.erase(service);
  return store(jobs) ? done : inputOutputError;
}

int LaunchJobs::kickstart(const std::string& service) {
  const auto lock = FileLock::take(lockPath_, lockTimeout);
  if (!lock) return inputOutputError;
  auto jobs = load();
  if (!jobs.contains(service)) return noSuchService;
  LaunchedProcess::of(jobs[service]).end();
  if (!start(jobs[service]) || !store(jobs)) return inputOutputError;
  return done;
}

pid_t LaunchJobs::process(const std::string& service) const {
  const auto jobs = load();
  if (!jobs.contains(service)) return 0;
  const auto process = LaunchedProcess::of(jobs[service]);
  return process.isRunning() ? process.number : 0;
}

Json LaunchJobs::load() const {
  auto jobs = readJsonFile(files_, path_);
  return jobs && jobs->is_object() ? *std::move(jobs) : Json::object();
}

bool LaunchJobs::store(const Json& jobs) { return writeJsonFile(files_, path_, jobs).has_value(); }

bool LaunchJobs::start(Json& job) {
  const auto logs = root_.realPath(root_.home() + "/Library/Logs");
  if (!files_.makeFolders(logs)) return false;
  const auto program = job["program"].get<std::vector<std::string>>();
  const auto log = logs + "/" + job["label"].get<std::string>() + ".log";
  const auto process = LaunchedProcess::start(program, log);
  if (process) process->writeTo(job);
  return process.has_value();
}

}  // namespace ostrel::simulated
