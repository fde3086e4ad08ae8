#pragma once

#include "Tests/Fakes/FakeChildProcesses.hpp"
#include "Tests/Fakes/FakeUnixSockets.hpp"
#include "Tests/Soak/Random.hpp"

namespace ostrel {

/// Those that may have a download rejected.
inline constexpr const char* containerRuntimes[] = {"one", "two", "three"};

/// What a helper comes to that is asked for the status: mostly a report, else any way to fail.
FakeChildProcesses::Result randomStatus(Random& dice);

/// What any other child comes to.
FakeChildProcesses::Result randomResult(Random& dice);

/// One answer of the daemon to whatever it is asked, or none.
FakeUnixSockets::Pieces randomAnswer(Random& dice);

}  // namespace ostrel
