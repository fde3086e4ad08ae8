#include "Benchmarks/ContainerBenchmark.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <semaphore>
#include <thread>
#include <utility>
#include <vector>

#include "Benchmarks/BenchTable.hpp"
#include "OstrelAgent/Containers/ContainerReader.hpp"
#include "OstrelAgent/Containers/ContainersPage.hpp"
#include "Platform/Linux/LinuxWorkspace.hpp"
#include "Platform/Posix/PosixBackgroundQueue.hpp"
#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixMainQueue.hpp"
#include "Platform/SimulatedMac/HostRoot.hpp"
#include "Platform/SimulatedMac/SimulatedRunningProcesses.hpp"
#include "Platform/SimulatedMac/SimulatedWorkspace.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {

namespace {

using namespace std::chrono_literals;

constexpr int runs = 101;
constexpr int readings = 21;

/// Applications and processes of a Mac, every tenth of them a container runtime's.
ApplicationsState macWith(int applications, int processes) {
  ApplicationsState state;
  for (int i = 0; i < applications; ++i) {
    const std::string name = i % 10 == 0 ? "com.docker.part" : "com.example.application";
    state.running.push_back({name + std::to_string(i), Date(1s * i)});
  }
  for (int i = 0; i < processes; ++i) {
    state.processes.push_back((i % 10 == 0 ? "colima" : "worker") + std::to_string(i));
  }
  return state;
}

double medianMicroseconds(auto work) {
  std::vector<double> times;
  for (int run = 0; run < runs; ++run) {
    const auto start = cpuSeconds();
    work();
    times.push_back(1e6 * (cpuSeconds() - start));
  }
  return median(std::move(times));
}

double detectionMicroseconds() {
  const auto mac = macWith(200, 2000);
  return medianMicroseconds(
      [&mac] { benchmark::DoNotOptimize(ContainerRuntime::running(mac.running, mac.processes)); });
}

double pageMicroseconds() {
  ContainerTrustReading::Detected detected;
  for (const auto& runtime : ContainerRuntime::table) detected.installed.emplace(runtime.name);
  detected.running = {"Colima", "Docker", "QEMU"};
  detected.needsRestart = {"Docker"};
  detected.bundlePEM = "-----BEGIN CERTIFICATE-----\n" + std::string(1600, 'A') + "\n";
  return medianMicroseconds([&detected] {
    const ContainersPage page{.reading = {ContainerBlock{{"Podman"}, std::nullopt}, detected},
                              .hasReading = true,
                              .selected = "QEMU"};
    benchmark::DoNotOptimize(page.content());
  });
}

/// CPU of one reading in the background, after caches have cooled for a while. Waking the thread does not
/// count: a refresh wakes it for its record, too.
double readingMicroseconds() {
  const TemporaryFolder root;
  const PosixFiles files([&root](std::string_view path) { return root.path() + std::string(path); });
  root.write(std::string(simulatedstate::applications).substr(1), usualApplications());
  const SimulatedApplications applications(files);
  LinuxWorkspace machine("");
  const SimulatedWorkspace workspace(machine, applications);
  const SimulatedRunningProcesses processes(applications);
  const UserAccount account{"/Users/robin", "/tmp", 501};
  PosixMainQueue mainQueue;
  PosixBackgroundQueue backgroundQueue(2);
  const auto reader =
      std::make_shared<ContainerReader>(ContainerReader::Services{mainQueue, backgroundQueue},
                                        ContainerDetector::Services{workspace, processes, files, account});
  std::vector<double> times;
  for (int i = 0; i < readings; ++i) {
    std::binary_semaphore end(0);
    backgroundQueue.run(QualityOfService::utility,
                        [&, reading = reader->begin(ContainerReader::Scope::running)] {
                          const auto start = cpuSeconds();
                          reading();
                          times.push_back(1e6 * (cpuSeconds() - start));
                          end.release();
                        });
    end.acquire();
    std::this_thread::sleep_for(250ms);
  }
  return median(std::move(times));
}

}  // namespace

ContainerFigures measureContainers() {
  return {detectionMicroseconds(), pageMicroseconds(), readingMicroseconds()};
}

std::string usualApplications() { return fileOfApplications(macWith(12, 100)); }

}  // namespace ostrel
