#pragma once

#include "Tests/Fakes/FakeChildProcesses.hpp"
#include "Tests/Fakes/FakeUnixSockets.hpp"
#include "Tests/Soak/Random.hpp"

namespace ostrel {

/// Runtimes in which a download may be rejected.
inline constexpr const char* containerRuntimes[] = {"one", "two", "three"};

/// The result of a status run: mostly a report, else any kind of failure.
FakeChildProcesses::Result randomStatus(Random& random);

/// The result of any other child.
FakeChildProcesses::Result randomResult(Random& random);

/// One answer of the daemon to any request, or none.
FakeUnixSockets::Pieces randomAnswer(Random& random);

}  // namespace ostrel
